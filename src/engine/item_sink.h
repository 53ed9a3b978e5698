#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "engine/cleaning_engine.h"
#include "engine/scan_sink.h"

// Takes what the searches find for one item of the hierarchy.
class CCleaningEngine::ItemSink : public ScanSink {
  public:
    ItemSink(CCleaningEngine& engine, ResultStore& store) : m_engine(engine), m_store(store) {}

    // Names the item that the next results belong to, and whether the whitelist is asked about them.
    void SetItem(tagCLEAN_ITEM& item, bool whitelistable) {
        m_item = &item;
        m_whitelistable = whitelistable;
    }

    void Add(ResultType type, const std::shared_ptr<const std::string>& path,
             std::optional<std::string> name) override {
        m_engine.AddResult(*m_item, m_store, type, path, std::move(name), m_whitelistable);
    }

    bool Cancelled() const override { return m_engine.Stopped(); }

  private:
    CCleaningEngine& m_engine;
    ResultStore& m_store;
    tagCLEAN_ITEM* m_item = nullptr;
    bool m_whitelistable = false;
};
