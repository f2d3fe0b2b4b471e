// The observers that were taken out while items for them may still be queued.
#pragma once

#include <algorithm>
#include <list>
#include <type_traits>
#include <unordered_map>

#include "events/notification.h"

namespace NQuillUtils::NEvents {

// One kind of them, in the order of removal. T is Orin::EventObserver or Orin::ClientObserver.
template <class T>
class InvalidObservers {
public:
    const std::list<T*>& All() const noexcept { return m_all; }
    bool Contains(const T* observer) const { return m_times.count(observer) != 0; }

    void Append(T* observer) {
        std::list<T*> node{observer};
        ++m_times[observer];
        m_all.splice(m_all.end(), node);
    }
    // Takes out one mention, the first. Removals end in the order in which they began, so it stands in front.
    void Erase(const T* observer) {
        const auto found = std::find(m_all.begin(), m_all.end(), observer);
        if (found == m_all.end()) return;
        m_all.erase(found);
        const auto times = m_times.find(observer);
        if (--times->second == 0) m_times.erase(times);
    }

private:
    std::list<T*> m_all;
    std::unordered_map<const T*, std::size_t> m_times;  // how often each is listed
};

// The dispatcher's own provider, which also answers for one observer without a search.
class InvalidClientProvider : public IInvalidClientProvider {
public:
    const std::list<Orin::EventObserver*>& GetInvalidEventObservers() const override { return m_invalidEvents.All(); }
    const std::list<Orin::ClientObserver*>& GetInvalidClientObservers() const override {
        return m_invalidClients.All();
    }

    template <class T>
    const InvalidObservers<T>& Of() const noexcept {
        if constexpr (std::is_same_v<T, Orin::EventObserver>)
            return m_invalidEvents;
        else
            return m_invalidClients;
    }

protected:
    ~InvalidClientProvider() = default;

    InvalidObservers<Orin::EventObserver> m_invalidEvents;
    InvalidObservers<Orin::ClientObserver> m_invalidClients;
};

template <class T>
bool IsListed(const IInvalidClientProvider& provider, const T* observer) {
    const std::list<T*>* list;
    if constexpr (std::is_same_v<T, Orin::EventObserver>)
        list = &provider.GetInvalidEventObservers();
    else
        list = &provider.GetInvalidClientObservers();
    if (list->empty()) return false;
    // With thousands of removed observers and items for each of them, searching would take the square of their number.
    constexpr std::size_t LongList = 16;
    if (list->size() > LongList)
        if (const auto* own = dynamic_cast<const InvalidClientProvider*>(&provider))
            return own->Of<T>().Contains(observer);
    return std::find(list->begin(), list->end(), observer) != list->end();
}

}  // namespace NQuillUtils::NEvents
