#pragma once

// Extensions, control panels, startup items and shutdown items: the files of two special folders of the
// system domain, one for those that are on, one for those that are off.

#include <cstdint>

#include "Evaluator/Exceptions.h"
#include "filesystem/Enumeration.h"
#include "filesystem/File.h"
#include "system/EnableableFiles.h"
#include "system/SpecialFolders.h"

// The types of their folders.
inline constexpr OSType kExtensions = 0x6578746E, kDisabledExtensions = 0x65787444;
inline constexpr OSType kControlPanels = 0x6374726C, kDisabledControlPanels = 0x63747244;
inline constexpr OSType kStartupItems = 0x73747274, kDisabledStartupItems = 0x73747244;
inline constexpr OSType kShutdownItems = 0x73686466, kDisabledShutdownItems = 0x73686444;

/// The file of that name in the special folder of the type. NoSuchObject when there is none, or no such
/// folder.
template <OSType type>
file special_file(unsigned char const* name, unsigned long length) {
    return file_of(name, length, special_folder<type>());
}

/// The items of a kind, one after the other: the enabled ones, the disabled ones, or first these, then those.
/// NoSuchObject ends them, and stands for a folder that is not there.
class SpecialItemIteratorBase {
  public:
    EnableableFile FirstEnabled();
    EnableableFile NextEnabled();
    EnableableFile FirstDisabled();
    EnableableFile NextDisabled();
    EnableableFile First();
    EnableableFile Next();

  protected:
    ~SpecialItemIteratorBase() = default;
    virtual folder EnabledFolder() const = 0;
    virtual folder DisabledFolder() const = 0;

  private:
    filesystem_object_iterator files;
    folder walked;
    bool isInEnabled = true;
};

template <OSType enabledType, OSType disabledType>
class SpecialItemIterator final : public SpecialItemIteratorBase {
  protected:
    folder EnabledFolder() const override { return special_folder<enabledType>(); }
    folder DisabledFolder() const override { return special_folder<disabledType>(); }
};

/// The items of a kind with one name: the enabled one, then the disabled one.
template <OSType enabledType, OSType disabledType>
class NamedSpecialItemIterator {
  public:
    EnableableFile First(unsigned char const* name, unsigned long length) {
        mayBeDisabled = 1;
        try {
            return {special_file<enabledType>(name, length), true};
        } catch (NoSuchObject const&) {
            return Next(name, length);
        }
    }
    EnableableFile Next(unsigned char const* name, unsigned long length) {
        if (mayBeDisabled == 0) throw NoSuchObject();
        mayBeDisabled = 0;
        return {special_file<disabledType>(name, length), false};
    }

  private:
    std::uint32_t mayBeDisabled = 0;
};

/// Enabled items by name: extension, control panel, startup item, shutdown item.
EnableableFile Neex(unsigned char const* name, unsigned long length);
EnableableFile Necp(unsigned char const* name, unsigned long length);
EnableableFile Nest(unsigned char const* name, unsigned long length);
EnableableFile Nesd(unsigned char const* name, unsigned long length);
/// Disabled ones.
EnableableFile Ndex(unsigned char const* name, unsigned long length);
EnableableFile Ndcp(unsigned char const* name, unsigned long length);
EnableableFile Ndst(unsigned char const* name, unsigned long length);
EnableableFile Ndsd(unsigned char const* name, unsigned long length);
