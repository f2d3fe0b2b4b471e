// The wrappers that turn database events into schematic ones.
#pragma once

#include <map>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "events/detail/notifications.h"
#include "events/detail/orin_event_observer.h"
#include "orin/snapshot.h"
#include "platform/annotated_mutex.h"

namespace NQuillUtils::NEvents {

// What a text was before a change, from the before-callback to the after-callback. Several threads may change several
// blocks at once, and an observer may make changes of its own in between, also of the same block. The restoring of a
// save point calls all of its before-callbacks first, of one block as often as it has changed: hence undone changes are
// kept by their objects.
class TextsBeforeChange {
public:
    void Remember(const Index& object, const Orin::String& text, bool undo);
    // The text that this thread remembered last for a change of the object, which it forgets; "" when the
    // before-callback could not read it. What was remembered since is forgotten too: those changes have failed, as no
    // after-callback came. Nothing for an undone change of which an earlier after-callback of the same restore has told
    // already.
    std::optional<Orin::String> Take(const Index& object, bool undo);

private:
    struct OfThread {
        std::vector<std::pair<Index, Orin::String>> changes;
        std::unordered_map<Index, Orin::String> undone;
    };

    Quill::Platform::Mutex m_mutex;
    std::map<Quill::Platform::ThreadId, OfThread> m_threads QUILL_GUARDED_BY(m_mutex);
};

// Whether an event is translated is decided before the filter of the plain wrapper, which sees what is not translated.
template <class T>
class CORINEventObserverExBase : public CORINEventObserver {
public:
    CORINEventObserverExBase(const Orin::ContainerT<const Orin::ISnapshot>& snapshot, T* observer,
                             OrinUtils::Mutex* mutex, Quill::Platform::ThreadId owner, const char* label, int number,
                             bool alwaysDirect)
        : CORINEventObserver(observer, mutex, owner, label, number, alwaysDirect),
          m_observerEx(observer),
          m_snapshot(snapshot) {}

    void Forget() noexcept override {
        m_observerEx.Forget();
        CORINEventObserver::Forget();
    }

protected:
    // Throws the failed Result.
    IUIDManager Objects() const {
        IUIDManager objects;
        if (Orin::Result result = m_snapshot->GetUIDManager(objects); !result) throw result;
        return objects;
    }

    BorrowedObserver<T> m_observerEx;
    Orin::ContainerT<const Orin::ISnapshot> m_snapshot;
};

class CORINEventObserverEx : public CORINEventObserverExBase<EventObserverEx> {
public:
    using CORINEventObserverExBase::CORINEventObserverExBase;

    void OnBeforeDelete(const Index& parent, const Index& object, Orin::EEventsDelete kind, bool undo) override;
    void OnBeforeChange(const Index& object, Orin::EEventsChange kind, bool undo) override;
    void OnAfterAdd(const Index& parent, const Index& object, Orin::EEventsAdd kind, bool undo) override;
    void OnAfterChange(const Index& object, Orin::EEventsChange kind, bool undo) override;
    void OnAfterSetAttribute(const Index& object, const Orin::String& name, const Orin::String& value,
                             Orin::EAttributeType type, int reserved, bool undo) override;
    void OnAfterRemoveAttribute(const Index& object, const Orin::String& name, Orin::EAttributeType type, int reserved,
                                bool undo) override;

private:
    // Whether the change was told as an event of its own.
    bool TranslateChange(const Index& object, Orin::EEventsChange kind, Moment moment);
    void TranslateAttribute(const Index& object, const Orin::String& name);
    Orin::String BlockName(const Index& block) const;

    TextsBeforeChange m_names;
};

class CORINEventObserverNavigator : public CORINEventObserverExBase<EventObserverNavigator> {
public:
    using CORINEventObserverExBase::CORINEventObserverExBase;

    void OnBeforeDelete(const Index& parent, const Index& object, Orin::EEventsDelete kind, bool undo) override;
    void OnBeforeChange(const Index& object, Orin::EEventsChange kind, bool undo) override;
    void OnAfterChange(const Index& object, Orin::EEventsChange kind, bool undo) override;

private:
    Orin::String DesignName(const Index& block) const;

    TextsBeforeChange m_designNames;
};

}  // namespace NQuillUtils::NEvents
