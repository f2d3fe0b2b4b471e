// Services that libraries offer each other by name: the interface base and its factory.
#pragma once

#include "platform/export.h"

namespace Quill {

// Base of every service object that an InterfaceFactory creates. A service is used through the derived interface that
// its name stands for; it is given back to the factory that created it and never deleted by its user.
class QUILLINTERFACEMANAGER_EXPORT Interface {
public:
    // The name under which the service's factory is registered, a text that lives as long as the process.
    virtual const char* interfaceName() const noexcept = 0;
    virtual ~Interface();

    Interface(const Interface&) = delete;
    Interface& operator=(const Interface&) = delete;

protected:
    Interface() noexcept = default;
};

// Creates and takes back the service objects of one name. Whether each call gives a new object or always the same one
// is the factory's own affair; a caller pairs every internalCreate with one internalRelease on the same factory.
class QUILLINTERFACEMANAGER_EXPORT InterfaceFactory {
public:
    virtual ~InterfaceFactory();

    // A service object, or null when the service is not available now.
    virtual Interface* internalCreate() = 0;

    // Takes back an object that internalCreate gave. Null is allowed and does nothing.
    virtual void internalRelease(Interface* object) = 0;

    InterfaceFactory(const InterfaceFactory&) = delete;
    InterfaceFactory& operator=(const InterfaceFactory&) = delete;

protected:
    InterfaceFactory() noexcept = default;
};

}  // namespace Quill
