// Which type a value is of, and that each question is answered by values of its types alone.

#include <vector>

#include "filesystem/Asking.h"
#include "plist/Lists.h"

namespace {

// Whether a function has an answer.
template <class R>
bool Answers(R (*function)(OSXValue const&), OSXValue const& value) {
    try {
        function(value);
        return true;
    } catch (NoSuchObject const&) {
        return false;
    }
}

// The functions that have an answer.
std::string AnsweredBy(OSXValue const& value) {
    std::string names;
    if (Answers(string_of_value, value)) names += "string ";
    if (Answers(cstring_of_value, value)) names += "cstring ";
    if (Answers(boolean_of_value, value)) names += "boolean ";
    if (Answers(integer_of_value, value)) names += "integer ";
    if (Answers(date_of_value, value)) names += "date ";
    if (Answers(array_of_value, value)) names += "array ";
    if (Answers(dictionary_of_value, value)) names += "dictionary ";
    return names;
}

struct Row {
    std::string list, type, answers;
};
// Of a binary list the marker of its object.
void PrintTo(Row const& row, std::ostream* out) {
    bool const isBinary = row.list.starts_with("bplist");
    *out << row.type << " by ";
    if (isBinary) {
        *out << "marker " << int{static_cast<unsigned char>(row.list.at(8))};
    } else {
        *out << row.list;
    }
}

class ValueTypes : public testing::TestWithParam<Row> {};

TEST_P(ValueTypes, AreNamed) {
    List const list(GetParam().list);
    EXPECT_EQ(GetParam().type, Text(type_of_value(list.Value())));
}

TEST_P(ValueTypes, AnswerTheirOwnQuestionsAlone) {
    List const list(GetParam().list);
    EXPECT_EQ(GetParam().answers, AnsweredBy(list.Value()));
}

INSTANTIATE_TEST_SUITE_P(Each, ValueTypes,
                         testing::Values(Row{"<true/>", "boolean", "boolean "},
                                         Row{"<false/>", "boolean", "boolean "},
                                         Row{"<string>1</string>", "string", "string cstring "},
                                         Row{"<string/>", "string", "string cstring "},
                                         Row{"<integer>1</integer>", "integer", "integer "},
                                         Row{"<real>2.5</real>", "integer", ""},
                                         Row{"<real>2.0</real>", "integer", "integer "},
                                         Row{"<data>MQ==</data>", "data", "string cstring "},
                                         Row{"<date>2001-01-01T00:00:00Z</date>", "date", "date "},
                                         Row{"<array><integer>1</integer></array>", "array", "array "},
                                         Row{"<dict><key>1</key><true/></dict>", "dictionary", "dictionary "},
                                         Row{Binary(kNullObject), "unknown type", ""},
                                         Row{Binary(kUniqueIdentifier), "unknown type", ""}));

}  // namespace
