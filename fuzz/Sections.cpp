// Any bytes as a settings file: its sections and keys are those of the plain rules.

#include "Answers.h"
#include "Invariants.h"
#include "Memory.h"

namespace {

// The input's first bytes say what is asked for, and how many bytes stand before the others in the file, so
// that these may lie across the end of the scanner's buffer.
struct Input {
    Input(std::uint8_t const* data, std::size_t size) {
        std::string const bytes(data, data + size);
        auto const at = [&](std::size_t place) {
            return place < size ? static_cast<unsigned char>(bytes[place]) : std::size_t{0};
        };
        std::size_t const nameSize = at(0) % 8;
        std::size_t const keySize = at(0) / 8 % 8;
        std::size_t const rest = std::min(size, 3 + nameSize + keySize);
        if (size > 3) name = bytes.substr(3, nameSize);
        if (size > 3 + nameSize) key = bytes.substr(3 + nameSize, keySize);
        constexpr char const* kFillings[] = {"", "", ";\n", ";"};
        std::string const filling = kFillings[at(0) / 64];
        if (!filling.empty()) {
            file.assign(Transcription::kSectionBuffer - 128 + at(1), filling[0]);
            file.replace(file.size() - filling.size(), filling.size(), filling);
        }
        file += bytes.substr(rest);
    }

    std::string name;
    std::string key;
    std::string file;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static Fork fork;
    Input const input(data, size);
    fork.Write(input.file);

    auto const ofFile = KeyOf(input.key, fork.AsFile());
    Fuzz::Hold(ofFile == Transcription::KeyOfFile(input.file, input.key),
               "a key of a file is that of the plain rules");
    auto const section = SectionOf(input.name, fork.AsFile());
    Fuzz::Hold(AsSection(section) == Transcription::SectionOfFile(input.file, input.name),
               "a section is that of the plain rules");
    if (section) {
        Fuzz::Hold(section->start <= input.file.size() && section->end <= input.file.size(),
                   "a section lies within its file");
        Fuzz::Hold(section->end == 0 || section->end > section->start, "a section that is empty ends at 0");
        auto const ofSection = KeyOf(input.key, *section);
        Fuzz::Hold(ofSection == Transcription::KeyOfSection(input.file, input.key, *AsSection(section)),
                   "a key of a section is that of the plain rules");
        Fuzz::Hold(section->end != 0 || !ofSection, "an empty section has no keys");
    }
    ReleaseInspectorMemory();
    return 0;
}
