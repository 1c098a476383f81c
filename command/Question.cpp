#include "command/Question.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "Evaluator/Embedding.h"

namespace Command {
namespace {

class OpenFile {
  public:
    explicit OpenFile(std::string const& path) : descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
    ~OpenFile() {
        if (descriptor >= 0) close(descriptor);
    }
    OpenFile(OpenFile const&) = delete;
    OpenFile& operator=(OpenFile const&) = delete;
    int const descriptor;  ///< negative: it could not be opened
};

// Returns false where reading fails, with the reason in errno.
bool ReadAll(int descriptor, std::size_t most, std::string& text) {
    std::array<char, 4096> part;
    while (text.size() < most) {
        ssize_t size = read(descriptor, part.data(), part.size());
        if (size <= 0) return size == 0;
        text.append(part.data(), static_cast<std::size_t>(size));
    }
    return true;
}

void DropLineEnd(std::string& text) {
    if (text.ends_with('\n')) text.pop_back();
    if (text.ends_with('\r')) text.pop_back();
}

}  // namespace

std::optional<Question> ReadQuestion(std::string const& file, std::string& why) {
    constexpr std::string_view lineEnd = "\r\n";
    std::size_t const most = Evaluator::Limits().queryBytes + lineEnd.size() + 1;
    Question question{{}, file == "-" ? "(standard input)" : file};
    bool isRead = false;
    if (file == "-")
        isRead = ReadAll(STDIN_FILENO, most, question.text);
    else if (OpenFile opened(file); opened.descriptor >= 0)
        isRead = ReadAll(opened.descriptor, most, question.text);
    if (!isRead) {
        why = "cannot read " + (file == "-" ? "standard input" : '"' + file + '"') + ": " +
              std::strerror(errno);
        return std::nullopt;
    }
    DropLineEnd(question.text);
    return question;
}

}  // namespace Command
