// Resolves indexes to objects.
#pragma once

#include "orin/design_objects.h"
#include "orin/handles.h"
#include "orin/views.h"

namespace Orin {

// What stands behind an IUIDManager; implemented by the database.
class ORINPI_EXPORT ObjectResolver : public Counted {
public:
    // The object of that index as one client sees it; ObjectNotFound when there is none of that kind.
    virtual Result Resolve(RefPtr<const IObject>& object, EObjectType type, const Index& index) const = 0;
};

// A value that resolves the indexes of one snapshot for one client, filled by ISnapshot::GetUIDManager. Copies resolve
// alike. Each operation gives ObjectNotFound, with the handle untouched, when the snapshot holds no object of that
// index and kind, and NotConnected on a manager that was never filled. Any thread may call.
class ORINPI_EXPORT IUIDManager {
public:
    IUIDManager() noexcept = default;
    explicit IUIDManager(RefPtr<const ObjectResolver> resolver) noexcept : m_resolver(std::move(resolver)) {}
    IUIDManager(const IUIDManager&) noexcept = default;
    IUIDManager& operator=(const IUIDManager&) noexcept = default;
    virtual ~IUIDManager();

    Result GetBlock(ContainerT<const IBlock>& block, const Index& index) const;
    Result GetBus(ContainerT<const IBus>& bus, const Index& index) const;
    Result GetComp(ContainerT<const IComp>& comp, const Index& index) const;
    Result GetGroup(ContainerT<const IGroup>& group, const Index& index) const;
    Result GetNet(ContainerT<const INet>& net, const Index& index) const;
    Result GetPath(ContainerT<const IPath>& path, const Index& index) const;
    Result GetQuillNet(ContainerT<const INetQuill>& net, const Index& index) const;

private:
    template <class T>
    Result Resolve(ContainerT<const T>& object, EObjectType type, const Index& index) const;

    RefPtr<const ObjectResolver> m_resolver;
};

}  // namespace Orin
