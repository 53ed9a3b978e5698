#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "engine/engine_messages.h"
#include "ui/theme/gdiplus.h"
#include "ui/tree/block_pool.h"
#include "ui/tree/handle_index.h"
#include "ui/tree/row_layout.h"
#include "ui/tree/tree_rows.h"
#include "ui/window/accessible.h"
#include "ui/window/painting.h"
#include "ui/window/window_impl.h"

// wParam a CCustomTree::Insertion, of which the tree takes the data whatever comes of it; lParam 1 asks the
// tree to follow its end. The new node; null when there is no parent or no memory
// for it; a want of memory behind that ends the program.
inline constexpr UINT WM_TREE_INSERT = WM_USER + 0x202;
// wParam the node, which goes with all that is below it. lParam 0 leaves the scroll bar to the next paint:
// for who takes away many.
inline constexpr UINT WM_TREE_DELETE = WM_USER + 0x203;
static_assert(WM_TREE_INSERT == 0x602 && WM_TREE_DELETE == 0x603, "the numbers are fixed");

// What the tree tells its parent, as WM_NOTIFY with a CCustomTree::Notification.
inline constexpr UINT TREEN_SELECTED = 1;  // another row is selected
inline constexpr UINT TREEN_EXPANDED = 2;  // a row was opened or closed, by the mouse
inline constexpr UINT TREEN_CHECKED = 3;   // a check box changed; the counts are as they were before

// A tree of rows that paint themselves: T, which derives from it, gives the rows their look and says what a
// click on one means, TData is what a row shows (it has a `handle`), TToolTip the window of the tips.
//
// The tree stands a million rows: the cost of an insertion, a click, a scroll and a paint does not depend on
// their number (tree_rows.h). A node stays where it is until it is deleted. Main thread.
//
// While a handler of a notification runs, nodes may be deleted; the tree itself may not.
template <class TData, class TToolTip, class T>
class CCustomTree : public CWindowImpl<T, CWindow, CControlWinTraits>,
                    public CDoubleBufferImpl<CCustomTree<TData, TToolTip, T>>,
                    public CAccessibleParts {
  public:
    struct Node : TreeRow {
        TData* data = nullptr;  // owned; null for the root
        Node* nextByHandle = nullptr;

        HSCANITEM Handle() const { return data->handle; }
        Node* Parent() const { return static_cast<Node*>(parent); }
        Node* FirstChild() const { return static_cast<Node*>(::FirstChild(*this)); }
        Node* NextSibling() const { return static_cast<Node*>(::NextSibling(*this)); }
        bool HasChildren() const { return descendants != 0; }  // or had some
    };
    using Data = TData;

    struct Insertion {
        Node* parent;
        BYTE expanded;
        BYTE enabled;
        BYTE checked;
        TData* data;
    };
    struct Notification {
        NMHDR hdr;
        Node* node;
        Node* parent;
        BYTE expanded;
        BYTE enabled;
        BYTE checked;
        TData* data;
    };

    CCustomTree() = default;
    ~CCustomTree() override { Empty(); }

    // Never null, and another one after each DeleteAll. It is not shown.
    Node* GetRoot() const { return m_tree.root; }
    // May be a node that was deleted; it has no parent then.
    Node* GetSelected() const { return m_selected; }
    // Null when no node has this handle. Of several the one that stands before the others.
    Node* FindNode(HSCANITEM handle);
    // What WM_TREE_INSERT does, for who adds very many: the message would pass the subclass of the tips,
    // which asks the system for a property each time and costs a hundred times the insertion under Wine.
    Node* Insert(const Insertion& insertion, bool follow = false);
    void DeleteAll();
    // Repaints unless the parent is closed.
    void SetNodeEnabled(Node* node, bool enabled);

    int GetContentHeight() const { return m_contentHeight; }
    int GetScrollPos() const { return m_scrollPos; }
    // Whether the row under a point, in client coordinates, has a tip, and which; null without.
    const char* TipAt(POINT point);

    // What T supplies. A row's rectangle is as wide as the client area. Bits of the answer of HitTest are
    // RowHit's.
    virtual unsigned HitTest(Node* node, POINT point, RowRect row, bool parentChecked) = 0;
    // Asked once, when the row comes.
    virtual int GetItemHeight(Node* node) = 0;
    virtual void DrawItem(Gdiplus::Graphics& g, RowRect row, Node* node, TData* data, bool parentChecked) = 0;
    virtual void OnItemAdded(Node* node, Node* parent) = 0;
    // Called by nobody: what was counted stays counted when rows go.
    virtual void OnItemRemoved(Node* node, Node* parent) = 0;
    virtual void OnItemChecked(Node* node) = 0;
    virtual const char* GetItemTip(Node*) { return nullptr; }

    void DoPaint(HDC dc);

    // CAccessibleParts, in custom_tree_access.h. T adds the texts to what it is described as here.
    LONG WindowRole() const override;
    LONG PartCount() const override;
    AccessiblePart DescribePart(LONG part) const override;
    LONG PartAt(POINT client) const override;
    LONG SelectedPart() const override { return PartOfRow(m_selected); }
    LONG FocusedPart() const override { return PartOfRow(m_selected); }
    LONG PartBeside(LONG part, LONG direction) const override;
    void PressPart(LONG part) override;
    bool SelectPart(LONG part, bool focus) override;

    BEGIN_MSG_MAP(CCustomTree)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_SIZE, OnSize)
        MESSAGE_HANDLER(WM_MOUSEMOVE, OnMouseMove)
        MESSAGE_HANDLER(WM_LBUTTONDOWN, OnLButtonDown)
        MESSAGE_HANDLER(WM_LBUTTONDBLCLK, OnLButtonDblClk)
        MESSAGE_HANDLER(WM_TREE_INSERT, OnTreeInsert)
        MESSAGE_HANDLER(WM_TREE_DELETE, OnTreeDelete)
        MESSAGE_HANDLER(kIgnoredMessage, OnIgnored)
        MESSAGE_HANDLER(WM_VSCROLL, OnVScroll)
        MESSAGE_HANDLER(WM_MOUSEWHEEL, OnMouseWheel)
        MESSAGE_HANDLER(WM_KEYDOWN, OnKeyDown)
        MESSAGE_HANDLER(WM_GETDLGCODE, OnGetDlgCode)
        MESSAGE_HANDLER(WM_TIMER, OnTimer)
        MESSAGE_HANDLER(WM_PAINT, OnBeforePaint)
        CHAIN_MSG_MAP(CDoubleBufferImpl<CCustomTree>)
        MESSAGE_HANDLER(WM_SETFOCUS, OnFocusChanged)
        MESSAGE_HANDLER(WM_KILLFOCUS, OnFocusChanged)
        MESSAGE_HANDLER(WM_UPDATEUISTATE, OnFocusChanged)
        MESSAGE_HANDLER(WM_SETREDRAW, OnSetRedraw)
        MESSAGE_HANDLER(WM_ENABLE, OnEnable)
        CHAIN_MSG_MAP(CAccessibleParts)
        REFLECT_NOTIFICATIONS()
    END_MSG_MAP()

  protected:
    // The next and the previous row on show; the node itself at the end. For null the first of all.
    Node* NextVisible(Node* node) const;
    Node* PrevVisible(Node* node) const;

    // The row that a screen reader knows by this number.
    Node* RowOfPart(LONG part) const;
    // Its check box is not dead.
    bool CanCheck(const Node& node) const { return node.enabled && IsParentChecked(node); }

    // The keyboard's place is to be seen: the tree has the focus, and the user works with keys.
    bool IsFocusShown() const;
    // A repaint of all, asked for once until it comes.
    void InvalidateAll();

  private:
    static constexpr UINT kIgnoredMessage = WM_USER + 0x102;
    static constexpr UINT_PTR kTipTimer = 1001;
    static constexpr int kLine = 32;        // pixels of a scroll by one line
    static constexpr int kEndSpace = 6;     // below the last row
    static constexpr int kSearching = 128;  // m_clickResult while no row is found

    // Holder of the root and of all nodes' memory.
    class CTree {
      public:
        CTree() { root = New(); }
        ~CTree() { m_pool.Give(root); }
        CTree(const CTree&) = delete;
        CTree& operator=(const CTree&) = delete;

        // Null when there is no memory.
        Node* New() {
            void* const memory = m_pool.Take();
            return memory != nullptr ? new (memory) Node : nullptr;
        }
        void Delete(Node* node) { m_pool.Give(node); }

        HandleIndex<Node> handles;
        Node* root = nullptr;

      private:
        BlockPool m_pool{sizeof(Node)};
    };

    LRESULT OnCreate(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnSize(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnMouseMove(UINT, WPARAM, LPARAM lParam, BOOL&);
    LRESULT OnLButtonDown(UINT, WPARAM, LPARAM lParam, BOOL&);
    LRESULT OnLButtonDblClk(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnTreeInsert(UINT, WPARAM wParam, LPARAM lParam, BOOL&);
    LRESULT OnTreeDelete(UINT, WPARAM wParam, LPARAM lParam, BOOL&);
    LRESULT OnIgnored(UINT, WPARAM, LPARAM, BOOL&) { return 0; }
    LRESULT OnVScroll(UINT, WPARAM wParam, LPARAM lParam, BOOL&);
    LRESULT OnMouseWheel(UINT, WPARAM wParam, LPARAM, BOOL&);
    LRESULT OnKeyDown(UINT, WPARAM wParam, LPARAM, BOOL& handled);
    LRESULT OnGetDlgCode(UINT, WPARAM, LPARAM, BOOL&) { return DLGC_WANTARROWS; }
    LRESULT OnTimer(UINT, WPARAM wParam, LPARAM, BOOL& handled);
    LRESULT OnBeforePaint(UINT, WPARAM, LPARAM, BOOL& handled);
    LRESULT OnFocusChanged(UINT message, WPARAM, LPARAM, BOOL& handled);
    LRESULT OnSetRedraw(UINT, WPARAM, LPARAM, BOOL& handled);
    LRESULT OnEnable(UINT, WPARAM wParam, LPARAM, BOOL& handled);

    static Node* AsNode(TreeRow* row) { return static_cast<Node*>(row); }
    static bool IsLive(const Node* node) { return node != nullptr && node->parent != nullptr; }

    void CreateToolTip();
    void HideTip();
    // The row that covers a point, with its rectangle in the client area.
    Node* NodeAt(POINT point, RowRect& row) const;

    void UpdateScrollBar(bool canWait = false);
    void SetBar(int contentHeight, int clientHeight, int position);
    void ShowBar();
    void MoveBar();
    void ScrollTo(int position, bool isThumb);
    void PrepareToPaint();
    void BringSelectedIntoView();

    void Notify(UINT code, Node* node);
    void SelectNode(Node* node);
    void DropSelected();
    void ToggleExpanded(Node* node);
    void ToggleChecked(Node* node);
    void PressCheck();

    LONG PartOfRow(const Node* node) const;
    void TellReaders(DWORD event, const Node* node) const;
    void TellFocus() const;

    void OnKeyLeft();
    void OnKeyRight();
    void OnKeyUp();
    void OnKeyDownwards();
    void OnKeySpace();
    void PostThumb(int position);

    void DeleteNode(Node* node);
    void DestroyBelow(Node* node);
    void Destroy(Node* node);
    void Empty();

    CTree m_tree;
    Node* m_selected = nullptr;
    int m_clickResult = 0;
    bool m_scrollToSelected = false;
    int m_clickX = 0;
    int m_clickY = 0;
    int m_contentHeight = 0;
    int m_scrollPos = 0;
    int m_clientHeight = 0;
    TToolTip m_toolTip;
    bool m_toolTipEnabled = true;
    bool m_pendingLayout = false;
    UINT_PTR m_timerId = 0;
    std::string m_tipText;
    UINT m_tipDelay = 200;  // milliseconds
    Node* m_lastFound = nullptr;
    Node* m_checking = nullptr;  // its change is being told; null if it is deleted meanwhile
    // What the scroll bar holds, or will when the system is told.
    struct {
        int contentHeight = 0;
        int clientHeight = 0;
        int position = 0;
    } m_bar;
    bool m_barWaits = false;
    bool m_invalid = false;  // a repaint of all is on its way
};
