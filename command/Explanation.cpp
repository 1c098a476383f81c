#include "command/Explanation.h"

#include <algorithm>
#include <vector>

namespace Command {
namespace {

// The columns of one line.
struct Row {
    std::string words, meaning, source;
};

void AddRows(Evaluator::Explanation const& node, std::size_t depth, std::vector<Row>& rows) {
    rows.push_back({std::string(2 * depth, ' ') + node.words,
                    node.typeName + (node.plural ? ", many" : ", one"),
                    node.registration.empty() ? "" : node.library + ": " + node.registration});
    for (Evaluator::Explanation const& part : node.parts) AddRows(part, depth + 1, rows);
}

// A column is no wider than this; what is longer stands out.
constexpr std::size_t kWidest = 40;

std::size_t WidthOf(std::vector<Row> const& rows, std::string Row::*column) {
    std::size_t width = 0;
    for (Row const& row : rows)
        if ((row.*column).size() <= kWidest) width = std::max(width, (row.*column).size());
    return width;
}

std::string Padded(std::string text, std::size_t width) {
    text.resize(std::max(text.size(), width), ' ');
    return text;
}

}  // namespace

std::string TextOfExplanation(Evaluator::Query const& query) {
    std::vector<Row> rows;
    AddRows(query.Explain(), 0, rows);
    std::size_t const words = WidthOf(rows, &Row::words), meaning = WidthOf(rows, &Row::meaning);
    std::string text = query.Bracketed() + "\n";
    for (Row const& row : rows) {
        std::string line = Padded(row.words, words) + "  " + Padded(row.meaning, meaning) + "  " + row.source;
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}

}  // namespace Command
