#pragma once

#include <windows.h>

#include <map>
#include <string>
#include <vector>

#include "engine/cleaning_engine.h"
#include "support/recording_window.h"

// The engine's messages as lines that a test can write down: what was sent, of which node, and the
// percentage. The elapsed times are left out.
class MessageLog {
  public:
    MessageLog() = default;
    // Learns the names of all records of the engine, results included: they are gone after a clean.
    explicit MessageLog(const CCleaningEngine& engine) {
        for (const tagCLEAN_CATEGORY& category : engine.Categories()) {
            Name(category, category.name);
            for (const tagCLEAN_APPLICATION& application : category.applications) {
                Name(application, application.name);
                for (const tagCLEAN_ENTITY& entity : application.entities) {
                    Name(entity, entity.name);
                    for (const tagCLEAN_ITEM& item : entity.items) {
                        for (const tagCLEAN_RESULT* result : item.results) {
                            Name(*result, result->name.value_or(*result->path));
                        }
                    }
                }
            }
        }
    }

    // Names of nodes that are told in `messages` themselves are taken from there.
    std::vector<std::string> Lines(const std::vector<RecordedMessage>& messages) {
        std::vector<std::string> lines;
        for (const RecordedMessage& message : messages) {
            if (message.node) m_names[reinterpret_cast<WPARAM>(message.node->handle)] = message.node->name;
            lines.push_back(Line(message));
        }
        return lines;
    }

  private:
    template <class Record>
    void Name(const Record& record, const std::string& name) {
        m_names[reinterpret_cast<WPARAM>(HandleOf(record))] = name;
    }

    std::string NodeOf(const RecordedMessage& message) const {
        if (message.wParam == 0) return "nothing";
        const auto known = m_names.find(message.wParam);
        return known != m_names.end() ? known->second : "(an unknown node)";
    }

    std::string Line(const RecordedMessage& message) const {
        const std::string percent = " " + std::to_string(message.lParam) + "%";
        switch (message.message) {
            case WM_ENGINE_NODE:
                return "node " + message.node->name;
            case WM_ENGINE_NODE_DONE:
                return "passed over " + NodeOf(message);
            case WM_ENGINE_LOADED:
                return "loaded " + std::to_string(message.lParam);
            case WM_ENGINE_SCAN_PROGRESS:
                return "scanned" + percent;
            case WM_ENGINE_SCAN_DONE:
                return "scan done";
            case WM_ENGINE_CLEAN_PROGRESS:
                return "cleaned " + NodeOf(message) + percent;
            case WM_ENGINE_CLEAN_DONE:
                return "clean done";
            case WM_ENGINE_SHRED_STARTED:
                return "shred started";
            case WM_ENGINE_SHRED_PROGRESS:
                return "shredded " + FileOf(message) + percent;
            case WM_ENGINE_SHRED_DONE:
                return "shred done";
            case WM_ENGINE_REBOOT_BEGIN:
                return "completion begins";
            case WM_ENGINE_REBOOT_END:
                return "completion ended";
            default:
                return "message " + std::to_string(message.message);
        }
    }

    static std::string FileOf(const RecordedMessage& message) {
        if (!message.shreddedPath) return "nothing";
        return message.shreddedPath->substr(message.shreddedPath->rfind('\\') + 1);
    }

    std::map<WPARAM, std::string> m_names;
};
