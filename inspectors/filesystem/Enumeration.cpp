#include "filesystem/Enumeration.h"

using MacintoshPlatform::FileItem;

namespace {

// The next value of `next` whose name ends with the suffix.
template <class Next>
auto NextEndingIn(inspector_string const& suffix, Next const& next) {
    auto item = next();
    while (!ItemHasSuffix(item, suffix)) item = next();
    return item;
}

}  // namespace

// Items

filesystem_object filesystem_object_iterator::FirstItem(Of of, folder const& parent) {
    loop.Start(parent);
    return NextItem(of, parent);
}

filesystem_object filesystem_object_iterator::NextItem(Of, folder const&) {
    if (loop.IsAtEnd()) throw NoSuchObject();
    filesystem_object item(loop.Item());
    ++loop;
    return item;
}

filesystem_object filesystem_object_iterator::FirstItemEndingIn(inspector_string const& suffix, Of of,
                                                                folder const& parent) {
    loop.Start(parent);
    return NextItemEndingIn(suffix, of, parent);
}

filesystem_object filesystem_object_iterator::NextItemEndingIn(inspector_string const& suffix, Of of,
                                                               folder const& parent) {
    return NextEndingIn(suffix, [&] { return NextItem(of, parent); });
}

// Files

file filesystem_object_iterator::FirstFile(Of of, folder const& parent) {
    loop.Start(parent);
    return NextFile(of, parent);
}

file filesystem_object_iterator::NextFile(Of of, folder const& parent) {
    for (;;) {
        filesystem_object const item = NextItem(of, parent);
        if (!item.Info().IsFolder()) return file(item);
    }
}

file filesystem_object_iterator::FirstFileEndingIn(inspector_string const& suffix, Of of,
                                                   folder const& parent) {
    loop.Start(parent);
    return NextFileEndingIn(suffix, of, parent);
}

file filesystem_object_iterator::NextFileEndingIn(inspector_string const& suffix, Of of,
                                                  folder const& parent) {
    return NextEndingIn(suffix, [&] { return NextFile(of, parent); });
}

// Folders

folder filesystem_object_iterator::FirstFolder(Of of, folder const& parent) {
    loop.Start(parent);
    return NextFolder(of, parent);
}

folder filesystem_object_iterator::NextFolder(Of of, folder const& parent) {
    for (;;) {
        filesystem_object const item = NextItem(of, parent);
        if (item.Info().IsFolder()) return folder(item);
    }
}

folder filesystem_object_iterator::FirstFolderEndingIn(inspector_string const& suffix, Of of,
                                                       folder const& parent) {
    loop.Start(parent);
    return NextFolderEndingIn(suffix, of, parent);
}

folder filesystem_object_iterator::NextFolderEndingIn(inspector_string const& suffix, Of of,
                                                      folder const& parent) {
    return NextEndingIn(suffix, [&] { return NextFolder(of, parent); });
}
