#include "app/config_keys.h"
#include "app/resources.h"
#include "ui/screens/dlg_scan.h"
#include "ui/theme/theme.h"

// The scan screen while a worker runs, and what it does with the worker's end.

namespace {

constexpr int kReportEvery = 4;     // ticks; a walk over the tree is too much for each
constexpr int kPreviewEvery = 2;    // and so is a picture
constexpr DWORD kPreviewTime = 50;  // ms
constexpr SIZE kPreviewLimit = {400, 400};

bool IsCategory(const CScanTree::Node& node) {
    return node.data != nullptr && node.data->type == ROW_CATEGORY;
}

std::string Label(const CScanTree::Node& node) {
    return node.data->label != nullptr ? node.data->label : "";
}

HSCANITEM AsItem(WPARAM wParam) {
    return reinterpret_cast<HSCANITEM>(wParam);
}

// Calls `visit` with each row of the first level.
template <class Visit>
void ForEachTopNode(const CScanTree& tree, Visit visit) {
    const CScanTree::Node* node = tree.GetRoot()->FirstChild();
    for (; node != nullptr; node = node->NextSibling()) visit(*node);
}

}  // namespace

// --- the tree
// ---------------------------------------------------------------------------------------------------

// Of the first level's rows the root; a worker that sends a lone entity, in the pass after a restart, means
// the root as well.
CDlgScan::Node* CDlgScan::ParentFor(DWORD level) const {
    if (level == ROW_CATEGORY || (level == ROW_ENTITY && m_state == SCAN_REBOOT_SHRED))
        return m_tree.GetRoot();
    return m_lastNode[level - 2];
}

std::string CDlgScan::LabelOf(const tagSCAN_NODE_INFO& info) const {
    if (info.filePath != nullptr) return info.filePath;
    if (info.name != nullptr && *info.name != '\0') return info.name;
    return ResourceText(IDS_NAMELESS);
}

// Tens of thousands of these come in one run, and the worker waits for each: nothing here but the insertion.
LRESULT CDlgScan::OnEngineNode(UINT, WPARAM, LPARAM lParam, BOOL&) {
    const tagSCAN_NODE_INFO& info = *reinterpret_cast<const tagSCAN_NODE_INFO*>(lParam);
    if (info.level < ROW_CATEGORY || info.level > ROW_RESULT) return 0;
    tagNODE_DATA* const data = NewNodeData(info.level, info.handle, LabelOf(info).c_str(), info.help,
                                           static_cast<Gdiplus::Bitmap*>(info.image));
    if (data == nullptr) {
        m_lastNode[info.level - 1] = nullptr;  // what belongs below it is left out as well
        return 0;
    }
    Node* const node = m_tree.Insert({ParentFor(info.level), info.expanded, 1, info.checked, data}, true);
    m_lastNode[info.level - 1] = node;
    if (info.level == ROW_RESULT && info.filePath != nullptr) m_previewQueue.Offer(info.filePath);
    return reinterpret_cast<LRESULT>(node);
}

LRESULT CDlgScan::OnEngineNodeDone(UINT, WPARAM wParam, LPARAM, BOOL&) {
    if (Node* const node = m_tree.FindNode(AsItem(wParam)); node != nullptr) PostDelete(node);
    return 0;
}

// The queue holds ten thousand messages, and a worker sends more than that at a stretch: a full one is
// emptied of the deletions that wait, in their order, as a child may wait before its parent.
void CDlgScan::PostDelete(Node* node) {
    const auto post = [this, node] { return m_tree.Post(WM_TREE_DELETE, reinterpret_cast<WPARAM>(node), 0); };
    if (post()) return;
    MSG waiting;
    while (::PeekMessageA(&waiting, m_tree, WM_TREE_DELETE, WM_TREE_DELETE, PM_REMOVE)) {
        ::DispatchMessageA(&waiting);
    }
    post();
}

LRESULT CDlgScan::OnChecked(int, NMHDR* header, BOOL&) {
    const auto& change = *reinterpret_cast<const CScanTree::Notification*>(header);
    m_pInterface->SetItemSelected(change.data->handle, change.checked != 0);
    // kept: of a row with others below, those that are checked at this moment, also if some were unchecked
    // since the row was
    const int count = change.data->type == ROW_RESULT ? 1 : static_cast<int>(change.data->checkedCount);
    m_selectedCount += change.checked != 0 ? count : -count;
    UpdateResultsFooter();
    Invalidate(false);
    return 0;
}

void CDlgScan::UpdateResultsFooter() {
    m_footer.text = WithNumber(ResourceText(IDS_ITEMS_FOUND), m_pInterface->GetItemsFound()) + "\n" +
                    WithNumber(ResourceText(IDS_ITEMS_SELECTED), m_selectedCount);
}

// --- the clock
// --------------------------------------------------------------------------------------------------

LRESULT CDlgScan::OnTimer(UINT, WPARAM wParam, LPARAM, BOOL& handled) {
    if (wParam == kAutoClean) {
        KillTimer(kAutoClean);
        // A clean that the user cannot see, because he has turned the page, does not begin by itself.
        if (IsWindowVisible()) m_btnClean.Click();
    } else if (wParam == kTick) {
        {
            const CClientDC dc(m_hWnd);
            Gdiplus::Graphics g(dc.m_hDC);
            DrawAnimation(g);
        }
        if (m_state == SCAN_SCANNING) ScanTick();
        if (m_state == SCAN_CLEANING) CleanTick();
    } else {
        handled = FALSE;
    }
    return 0;
}

void CDlgScan::ScanTick() {
    m_footer.text = WithNumber(ResourceText(IDS_ITEMS_FOUND), m_pInterface->GetItemsFound());
    if (++m_reportTicks == kReportEvery) {
        SetReport(RunningReport(ResourceText(IDS_REPORT_SCANNING), FoundLines()));
        m_reportTicks = 0;
    }
    if (++m_previewTicks == kPreviewEvery) {
        ShowNextPreview();
        m_previewTicks = 0;
    }
    Invalidate();
}

void CDlgScan::CleanTick() {
    if (++m_cleanTicks == kReportEvery) {
        SetReport(RunningReport(ResourceText(IDS_REPORT_CLEANING), RunningCleanLines()));
        m_cleanTicks = 0;
    }
    m_tree.Invalidate();
    Invalidate();
}

void CDlgScan::DropPreview() {
    m_preview.reset();
    m_previewSize = {};
}

// What cannot be shown is skipped.
void CDlgScan::ShowNextPreview() {
    DropPreview();
    // Most of what is queued may be no picture at all; the window must not wait for that.
    const DWORD start = ::GetTickCount();
    while (!m_preview && !m_previewQueue.IsEmpty() && ::GetTickCount() - start < kPreviewTime) {
        m_preview = LoadThumbnail(m_previewQueue.Take(), kPreviewLimit);
    }
    BITMAP bitmap = {};
    if (m_preview && ::GetObjectA(m_preview.get(), sizeof bitmap, &bitmap) != 0) {
        m_previewSize = {bitmap.bmWidth, bitmap.bmHeight};
    }
}

// --- reports
// ----------------------------------------------------------------------------------------------------

ReportLines CDlgScan::FoundLines() const {
    ReportLines lines;
    ForEachTopNode(m_tree, [&lines](const Node& node) {
        if (IsCategory(node)) lines.push_back({Label(node), static_cast<int>(node.data->checkedCount)});
    });
    return lines;
}

ReportLines CDlgScan::CleanedLines() const {
    ReportLines lines;
    ForEachTopNode(m_tree, [&lines, this](const Node& node) {
        if (IsCategory(node)) {
            lines.push_back({Label(node), m_pInterface->GetCategoryCleaned(node.data->handle)});
        }
    });
    return lines;
}

ReportLines CDlgScan::RunningCleanLines() const {
    std::vector<CleanedCategory> categories;
    ForEachTopNode(m_tree, [&categories](const Node& node) {
        categories.push_back({!node.enabled, IsCategory(node)});
    });
    const std::vector<bool> reported = ReportedWhileCleaning(categories);
    ReportLines lines;
    std::size_t index = 0;
    ForEachTopNode(m_tree, [&](const Node& node) {
        if (reported[index++]) {
            lines.push_back({Label(node), m_pInterface->GetCategoryCleaned(node.data->handle)});
        }
    });
    return lines;
}

LRESULT CDlgScan::OnScanStarted(UINT, WPARAM, LPARAM, BOOL&) {
    SetReport(RunningReport(ResourceText(IDS_REPORT_SCANNING), {}));
    m_report.ScrollToTop();
    return 0;
}

LRESULT CDlgScan::OnCleanStarted(UINT, WPARAM, LPARAM, BOOL&) {
    SetReport(RunningReport(ResourceText(IDS_REPORT_CLEANING), {}));
    m_report.ScrollToTop();
    return 1;
}

// --- progress and end
// -------------------------------------------------------------------------------------------

LRESULT CDlgScan::OnEngineScanProgress(UINT, WPARAM, LPARAM lParam, BOOL&) {
    m_progress.SetPos(static_cast<int>(lParam));
    return 1;
}

LRESULT CDlgScan::OnEngineScanDone(UINT, WPARAM, LPARAM lParam, BOOL&) {
    SetState(SCAN_RESULTS);
    const std::uint32_t found = m_pInterface->GetItemsFound();
    m_selectedCount = static_cast<int>(found - m_pInterface->GetItemsWhitelisted());
    SetReport(
        ScannedReport({ResourceText(IDS_REPORT_SCANNED), WithNumber(ResourceText(IDS_REPORT_FOUND), found),
                       ResourceText(IDS_REPORT_NEXT_STEP), ResourceText(IDS_REPORT_NEXT_BUTTON)},
                      FoundLines()));
    if (found == 0) {
        const bool hadFocus = HasFocus();
        ShowItem(IDC_SCAN_CLEAN, false);
        if (hadFocus) m_btnNewScan.SetFocus();
    }
    UpdateResultsFooter();
    Invalidate();
    const bool stopped = lParam != 0;
    m_stoppedAt = stopped ? std::optional<DWORD>(::GetTickCount()) : std::nullopt;
    if (!stopped && found != 0 && m_pInterface->GetConfigInt(KEY_AUTOCLEAN) == 1) {
        SetTimer(kAutoClean, kTickTime);
    }
    return 0;
}

LRESULT CDlgScan::OnEngineCleanProgress(UINT, WPARAM wParam, LPARAM lParam, BOOL&) {
    if (Node* const node = m_tree.FindNode(AsItem(wParam)); node != nullptr)
        m_tree.SetNodeEnabled(node, false);
    m_progress.SetPos(static_cast<int>(lParam));
    return 1;
}

LRESULT CDlgScan::OnEngineCleanDone(UINT, WPARAM, LPARAM, BOOL&) {
    SetState(SCAN_CLEANED);
    const std::uint32_t failed = m_pInterface->GetItemsFailed();
    SetReport(
        CleanedReport({ResourceText(IDS_REPORT_CLEANED),
                       WithNumber(ResourceText(IDS_REPORT_REMOVED), m_pInterface->GetItemsCleaned()),
                       failed != 0 ? WithNumber(ResourceText(IDS_REPORT_FAILED), failed) : std::string()},
                      CleanedLines()));
    m_report.ShowWindow(SW_SHOW);
    m_report.ScrollToTop();
    if (failed != 0) m_pInterface->PromptRestart(m_pInterface->GetConfigInt(KEY_CLEANMODE) > 0);
    return 0;
}
