#include "filesystem/Descendants.h"

#include <memory>

#include "Evaluator/Exceptions.h"

SharingPtr<FileLoop> MakeFileLoop(MacintoshPlatform::FileLocation const& location) {
    auto loop = std::make_unique<FileLoop>();
    loop->Start(location);
    return SharingPtr<FileLoop>(loop.release());
}

file descendant_iterator::First(Of of, folder const& top) {
    loops.clear();
    loops.push_back(MakeFileLoop(top));
    return Next(of, top);
}

file descendant_iterator::Next(Of, folder const&) {
    while (!loops.empty()) {
        FileLoop& loop = *loops.back();
        if (loop.IsAtEnd()) {
            loops.pop_back();
            continue;
        }
        if (!loop.Item().Info().IsFolder()) {
            file found(loop.Item());
            ++loop;
            return found;
        }
        loop.scratch = loop.Item();
        loops.push_back(MakeFileLoop(loop.scratch));
        ++loop;
    }
    throw NoSuchObject();
}
