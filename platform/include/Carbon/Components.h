#pragma once

// The Component Manager: the components that are registered on this machine.
//
// They are those that the information dictionaries of bundles name: bundles called *.component that lie
// directly in the component folders ('cmpd' of Carbon/Folders.h) of the user, the local, the network and the
// system domain. Each dictionary of such a bundle's array "AudioComponents" is a component:
//
//   type, subtype,   texts of exactly four characters that Mac Roman has; without them it is none
//   manufacturer
//   name             text
//   description      text: the information text
//   version          number: 0xMMMMmmbb; 0 where there is none that 32 bits hold
//
// Nothing of a component's code is loaded.

#include <Carbon/MacErrors.h>
#include <Carbon/MacMemory.h>
#include <Carbon/MacTypes.h>

/// A component: a number other than 0, which it keeps as long as it is registered and the process lives, and
/// which no other one ever has. A component is known by its bundle's path, its place in the array there and
/// its three codes: where one of these changes it is another one. 0 is none.
typedef UInt32 Component;
/// A component that was opened.
typedef struct OpaqueComponentInstance* ComponentInstance;

#pragma pack(push, 2)

/// What a component is. In a search 0 stands for any, and of the flags those count that the mask has.
typedef struct ComponentDescription {
    OSType componentType;
    OSType componentSubType;
    OSType componentManufacturer;
    UInt32 componentFlags;  // 0: there are none here
    UInt32 componentFlagsMask;
} ComponentDescription;

#pragma pack(pop)

enum {
    kAnyComponentType = 0,
    kAnyComponentSubType = 0,
    kAnyComponentManufacturer = 0,
    kAnyComponentFlagsMask = 0
};

/// A result of components, as a number of 32 bits: there is no such instance.
enum { badComponentInstance = -2147450879 };  // 0x80008001

/// The next component behind `previous`, which may have gone meanwhile, that is as `looking` (optional) says;
/// 0 when there is none. With 0 for `previous` the folders are looked at anew, and the first one is told.
/// Components come in the order in which they were seen first; of those, by domain, as above, by the names of
/// the bundles, byte by byte, and as they are named in them. 0 too when the check-in function says stop,
/// without memory, and when the table of special folders cannot be used, of which PlatformSettingsFailure
/// tells. A mount that does not answer is waited for as long as the check-in function lets; what lies on one
/// that another call waits for in vain is passed over. PlatformUnresponsiveMount tells of both. Folders and
/// bundles that are there and cannot be read, or whose dictionary is no property list, are passed over too;
/// where that leaves no component, PlatformFileFailure and PlatformPropertyListFailure tell of them.
PLATFORM_API Component FindNextComponent(Component previous, ComponentDescription const* looking);

/// Gets what is known of a component. The handles, each of which may be null, are those of blocks, which get
/// the name and the information text as a length byte and that many bytes of UTF-8, cut at a character's end
/// to 255, and the icon: no bytes, as there is none. A text that a component does not have is one byte of
/// value 0. invalidComponentID for what is no component, memWZErr for a handle that is none; memFullErr.
PLATFORM_API OSErr GetComponentInfo(Component component, ComponentDescription* description, Handle name,
                                    Handle info, Handle icon);

/// Opens a component. The instance is the caller's, who ends it with CloseComponent. Null for what is no
/// component, and without memory.
PLATFORM_API ComponentInstance OpenComponent(Component component);
/// Ends an instance. invalidComponentID for what is none.
PLATFORM_API OSErr CloseComponent(ComponentInstance instance);
/// The version of a component, as it was when it was opened. badComponentInstance for what is no instance.
PLATFORM_API SInt32 GetComponentVersion(ComponentInstance instance);

#ifdef __cplusplus
static_assert(sizeof(ComponentDescription) == 20);
#endif
