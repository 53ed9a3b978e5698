#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

// Finds nodes by the handle of their data. The nodes are chained through their own `nextByHandle`; what a
// handle is, TNode::Handle() says, and several nodes may have the same.
//
// The table grows by one chain at a time, so no single insertion pays for all before it. Handles are
// addresses that come in ascending order for the most part. They are spread so that they still do: then the
// chains that are split one after another belong to nodes that lie side by side. With a spread that scatters
// them an insertion among a million costs three times as much.
template <class TNode>
class HandleIndex {
  public:
    void Add(TNode* node) {
        TNode*& head = Chain(IndexOf(Spread(node->Handle())));
        node->nextByHandle = head;
        head = node;
        if (++m_nodes > m_chains) Grow();
    }

    // The node has to be in it.
    void Remove(TNode* node) {
        TNode** link = &Chain(IndexOf(Spread(node->Handle())));
        while (*link != node) link = &(*link)->nextByHandle;
        *link = node->nextByHandle;
        --m_nodes;
    }

    // Of the nodes with this handle the one that is before all others by `isBefore`; null if there is none.
    template <class THandle, class TBefore>
    TNode* Find(THandle handle, const TBefore& isBefore) const {
        TNode* found = nullptr;
        if (m_nodes == 0) return found;
        for (TNode* node = Chain(IndexOf(Spread(handle))); node != nullptr; node = node->nextByHandle) {
            if (node->Handle() != handle) continue;
            if (found == nullptr || isBefore(*node, *found)) found = node;
        }
        return found;
    }

    void Clear() {
        m_segments.clear();
        m_segments.push_back(std::make_unique<Segment>());
        m_chains = kFirstChains;
        m_half = kFirstChains;
        m_nodes = 0;
    }

    HandleIndex() { Clear(); }

  private:
    static constexpr std::size_t kSegment = 1024;
    static constexpr std::size_t kFirstChains = 64;
    struct Segment {
        TNode* chains[kSegment] = {};
    };

    template <class THandle>
    static std::size_t Spread(THandle handle) {
        const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(handle) >> 4;
        return address + (address >> 10) + (address >> 20);
    }
    // The chains below m_chains - m_half have been split in two already.
    std::size_t IndexOf(std::size_t spread) const {
        const std::size_t index = spread & (2 * m_half - 1);
        return index < m_chains ? index : spread & (m_half - 1);
    }
    TNode*& Chain(std::size_t index) const { return m_segments[index / kSegment]->chains[index % kSegment]; }

    void Grow() {
        const std::size_t fresh = m_chains++;
        if (fresh % kSegment == 0) m_segments.push_back(std::make_unique<Segment>());
        TNode** link = &Chain(fresh - m_half);
        while (TNode* const node = *link) {
            if ((Spread(node->Handle()) & (2 * m_half - 1)) == fresh) {
                *link = node->nextByHandle;
                node->nextByHandle = Chain(fresh);
                Chain(fresh) = node;
            } else {
                link = &node->nextByHandle;
            }
        }
        if (m_chains == 2 * m_half) m_half = m_chains;
    }

    std::vector<std::unique_ptr<Segment>> m_segments;
    std::size_t m_chains = 0;
    std::size_t m_half = 0;  // the largest power of 2 that is not above m_chains
    std::size_t m_nodes = 0;
};
