#include "filesystem/Ancestors.h"

#include "Evaluator/Exceptions.h"
#include "filesystem/LookUps.h"

using MacintoshPlatform::FileLocation;

folder ancestor_iterator::FolderAbove(FileLocation const& location) {
    last = location.ParentURL();
    return folder(Inspectors::ItemAt(FileLocation(last)));
}

folder ancestor_iterator::First(Of, filesystem_object const& object) { return FolderAbove(object); }

folder ancestor_iterator::Next(Of, filesystem_object const&) {
    try {
        return FolderAbove(FileLocation(last));
    } catch (...) {
        throw NoSuchObject();
    }
}
