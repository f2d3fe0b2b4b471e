#include "orin/uid_manager.h"

namespace Orin {

IUIDManager::~IUIDManager() = default;

template <class T>
Result IUIDManager::Resolve(ContainerT<const T>& object, EObjectType type, const Index& index) const {
    if (!m_resolver) return EErrorCode::NotConnected;
    RefPtr<const IObject> found;
    Result result = m_resolver->Resolve(found, type, index);
    if (result) object = ContainerT<const T>(RefPtr<const T>::Adopt(static_cast<const T*>(found.Detach())));
    return result;
}

Result IUIDManager::GetBlock(ContainerT<const IBlock>& block, const Index& index) const {
    return Resolve(block, EObjectType::Block, index);
}

Result IUIDManager::GetBus(ContainerT<const IBus>& bus, const Index& index) const {
    return Resolve(bus, EObjectType::Bus, index);
}

Result IUIDManager::GetComp(ContainerT<const IComp>& comp, const Index& index) const {
    return Resolve(comp, EObjectType::Comp, index);
}

Result IUIDManager::GetGroup(ContainerT<const IGroup>& group, const Index& index) const {
    return Resolve(group, EObjectType::Group, index);
}

Result IUIDManager::GetNet(ContainerT<const INet>& net, const Index& index) const {
    return Resolve(net, EObjectType::Net, index);
}

Result IUIDManager::GetPath(ContainerT<const IPath>& path, const Index& index) const {
    return Resolve(path, EObjectType::Path, index);
}

Result IUIDManager::GetQuillNet(ContainerT<const INetQuill>& net, const Index& index) const {
    return Resolve(net, EObjectType::NetQuill, index);
}

}  // namespace Orin
