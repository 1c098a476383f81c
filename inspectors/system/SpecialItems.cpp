#include "system/SpecialItems.h"

// The walks

EnableableFile SpecialItemIteratorBase::FirstEnabled() {
    walked = EnabledFolder();
    return {files.FirstFile(Of(), walked), true};
}

EnableableFile SpecialItemIteratorBase::NextEnabled() { return {files.NextFile(Of(), walked), true}; }

EnableableFile SpecialItemIteratorBase::FirstDisabled() {
    walked = DisabledFolder();
    return {files.FirstFile(Of(), walked), false};
}

EnableableFile SpecialItemIteratorBase::NextDisabled() { return {files.NextFile(Of(), walked), false}; }

EnableableFile SpecialItemIteratorBase::First() {
    isInEnabled = true;
    try {
        return FirstEnabled();
    } catch (NoSuchObject const&) {
        isInEnabled = false;
        return FirstDisabled();
    }
}

EnableableFile SpecialItemIteratorBase::Next() {
    if (!isInEnabled) return NextDisabled();
    try {
        return NextEnabled();
    } catch (NoSuchObject const&) {
        isInEnabled = false;
        return FirstDisabled();
    }
}

// One by name

EnableableFile Neex(unsigned char const* name, unsigned long length) {
    return {special_file<kExtensions>(name, length), true};
}
EnableableFile Necp(unsigned char const* name, unsigned long length) {
    return {special_file<kControlPanels>(name, length), true};
}
EnableableFile Nest(unsigned char const* name, unsigned long length) {
    return {special_file<kStartupItems>(name, length), true};
}
EnableableFile Nesd(unsigned char const* name, unsigned long length) {
    return {special_file<kShutdownItems>(name, length), true};
}
EnableableFile Ndex(unsigned char const* name, unsigned long length) {
    return {special_file<kDisabledExtensions>(name, length), false};
}
EnableableFile Ndcp(unsigned char const* name, unsigned long length) {
    return {special_file<kDisabledControlPanels>(name, length), false};
}
EnableableFile Ndst(unsigned char const* name, unsigned long length) {
    return {special_file<kDisabledStartupItems>(name, length), false};
}
EnableableFile Ndsd(unsigned char const* name, unsigned long length) {
    return {special_file<kDisabledShutdownItems>(name, length), false};
}
