#include "designdata/net_names_collector.h"

#include <atomic>
#include <map>

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include "designdata/result_rule.h"
#include "labels/time_stamp.h"
#include "orin/design_objects.h"
#include "orin/observers.h"
#include "orin/orin_pi.h"
#include "platform/logging.h"

namespace Quill {

namespace {

using Snapshot = Orin::ContainerT<const Orin::ISnapshot>;
using Names = std::set<std::string>;
using Utils::Require;

}  // namespace

class NetsNamesCollector::Impl : public Orin::EventObserver {
public:
    explicit Impl(NetsNamesCollector* owner) : m_owner(owner) {}

    void Attach(const Snapshot& snapshot) {
        try {
            Require(snapshot.IsValid());
            Orin::SnapshotInfo info;
            Require(snapshot->GetInfo(info));
            const std::string client = "NetsNamesCollector" + std::string(info.snapshotName.View()) + ":" +
                                       Utils::time_stamp::current(Utils::time_stamp::raw);
            Require(m_connection.AttachSubClient(info.projectName, client.c_str()));
            auto followed = std::make_unique<Snapshot>();
            Require(m_connection.GetSnapshotByName(*followed, info.snapshotName));
            m_snapshot = std::move(followed);
            m_stale = true;
            Require((*m_snapshot)->AddEventObserver(this));
        } catch (const Orin::Result& failed) {
            zolt::Logging::FatalError("Cannot attach NetsNamesCollector observer to Orin: " +
                                      std::string(failed.GetDescription().View()));
        }
    }

    void Detach() {
        if (!m_snapshot) return;
        (*m_snapshot)->RemoveEventObserver(this);
        m_connection.DetachSubClient();
        m_snapshot.reset();
    }

    bool Reload() {
        if (!m_snapshot) return false;
        Orin::IteratorT<const Orin::IBlock> blocks;
        // Down before the design is read, so that an edit from now on is not missed.
        const bool wasStale = m_stale.exchange(false);
        try {
            if (!(*m_snapshot)->GetIterBlocks(blocks)) {
                if (wasStale) m_stale = true;
                return false;
            }
            m_names.clear();
            for (; blocks; ++blocks)
                Collect(*blocks);
        } catch (...) {
            m_stale = true;
            throw;
        }
        return true;
    }

    const Names& NamesOf(const Orin::Index& block) {
        if (m_stale) Reload();
        const auto found = m_names.find(block);
        return found == m_names.end() ? m_empty : *found->second;
    }

    void OnAfterAdd(const Orin::Index&, const Orin::Index&, Orin::EEventsAdd kind, bool) override {
        if (kind == Orin::EEventsAdd::Net) m_stale = true;
    }
    void OnBeforeDelete(const Orin::Index&, const Orin::Index&, Orin::EEventsDelete kind, bool) override {
        if (kind == Orin::EEventsDelete::Net) m_stale = true;
    }
    void OnAfterDelete(const Orin::Index&, const Orin::Index&, Orin::EEventsDelete kind, bool) override {
        if (kind == Orin::EEventsDelete::Net) m_stale = true;
    }
    void OnAfterChange(const Orin::Index&, Orin::EEventsChange kind, bool) override {
        if (kind == Orin::EEventsChange::Label || kind == Orin::EEventsChange::Name) m_stale = true;
    }

private:
    void Collect(const Orin::IBlock& block) {
        Orin::String name;
        Require(block.GetName(name));  // a block that cannot even tell its name ends the reload
        Orin::IteratorT<const Orin::INet> nets;
        Require(block.GetIterNets(nets));
        const auto names = boost::make_shared<Names>();
        for (; nets; ++nets) {
            Orin::String label;
            nets->GetLabel(label);
            names->emplace(label.View());
        }
        Orin::Index index;
        if (!names->empty() && block.GetIndex(index)) m_names.emplace(index, names);
    }

    std::map<Orin::Index, boost::shared_ptr<Names>> m_names;  // only of blocks that have nets
    const Names m_empty;
    std::atomic<bool> m_stale{true};  // set by the database's threads
    Orin::OrinPI m_connection;        // goes before the flag: closing it ends the callbacks
    std::unique_ptr<Snapshot> m_snapshot;
    [[maybe_unused]] NetsNamesCollector* m_owner;
};

NetsNamesCollector::NetsNamesCollector() : m_impl(std::make_unique<Impl>(this)) {}

NetsNamesCollector::~NetsNamesCollector() {
    DetachObserver();
}

void NetsNamesCollector::AttachObserver(const Snapshot& snapshot) {
    m_impl->Attach(snapshot);
}

void NetsNamesCollector::DetachObserver() {
    m_impl->Detach();
}

bool NetsNamesCollector::Reload() {
    return m_impl->Reload();
}

const std::set<std::string>& NetsNamesCollector::GetExistingNames(const Orin::Index& block) {
    return m_impl->NamesOf(block);
}

}  // namespace Quill
