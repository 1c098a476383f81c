#include "bundles/Languages.h"

#include <algorithm>

namespace Platform {

namespace {

struct Language {
    std::string_view code;
    std::string_view name;
};

// The first one of a name is its code.
constexpr Language kLanguages[] = {
    {"en", "English"},
    {"fr", "French"},
    {"de", "German"},
    {"it", "Italian"},
    {"nl", "Dutch"},
    {"es", "Spanish"},
    {"ja", "Japanese"},
    {"sv", "Swedish"},
    {"da", "Danish"},
    {"pt", "Portuguese"},
    {"no", "Norwegian"},
    {"nb", "Norwegian"},
    {"nn", "Norwegian"},
    {"fi", "Finnish"},
    {"ko", "Korean"},
    {"zh_CN", "SimplifiedChinese"},
    {"zh_SG", "SimplifiedChinese"},
    {"zh-Hans", "SimplifiedChinese"},
    {"zh_TW", "TraditionalChinese"},
    {"zh_HK", "TraditionalChinese"},
    {"zh-Hant", "TraditionalChinese"},
    {"zh", "Chinese"},
    {"ar", "Arabic"},
    {"bg", "Bulgarian"},
    {"ca", "Catalan"},
    {"cs", "Czech"},
    {"el", "Greek"},
    {"eo", "Esperanto"},
    {"et", "Estonian"},
    {"eu", "Basque"},
    {"fa", "Persian"},
    {"ga", "Irish"},
    {"he", "Hebrew"},
    {"hi", "Hindi"},
    {"hr", "Croatian"},
    {"hu", "Hungarian"},
    {"id", "Indonesian"},
    {"is", "Icelandic"},
    {"lt", "Lithuanian"},
    {"lv", "Latvian"},
    {"mk", "Macedonian"},
    {"mt", "Maltese"},
    {"pl", "Polish"},
    {"ro", "Romanian"},
    {"ru", "Russian"},
    {"sk", "Slovak"},
    {"sl", "Slovenian"},
    {"sq", "Albanian"},
    {"sr", "Serbian"},
    {"th", "Thai"},
    {"tr", "Turkish"},
    {"uk", "Ukrainian"},
    {"vi", "Vietnamese"},
    {"yi", "Yiddish"},
};

// Codes that mean the same language as written in another way.
constexpr Language kOtherCodes[] = {{"zh_CN", "zh-Hans"}, {"zh_SG", "zh-Hans"}, {"zh_TW", "zh-Hant"},
                                    {"zh_HK", "zh-Hant"}, {"zh-Hans", "zh_CN"}, {"zh-Hant", "zh_TW"},
                                    {"nb", "no"},         {"nn", "no"}};

// Names in the order in which they came, each once. Few, so that they are compared one by one.
class Names {
  public:
    void Add(std::string_view name) {
        if (std::find(names.begin(), names.end(), name) == names.end()) names.emplace_back(name);
    }
    std::vector<std::string> Take() { return std::move(names); }

  private:
    std::vector<std::string> names;
};

std::string With(char separator, std::string_view code) {
    std::string result(code);
    std::replace_if(
        result.begin(), result.end(), [](char character) { return character == '_' || character == '-'; },
        separator);
    return result;
}

bool IsSameCode(std::string_view one, std::string_view other) { return With('_', one) == With('_', other); }

// The code with both separators, what else it is written as, and its English name.
void AddCode(std::string_view code, Names& names) {
    names.Add(code);
    names.Add(With('_', code));
    names.Add(With('-', code));
    for (Language const& other : kOtherCodes) {
        if (IsSameCode(code, other.code)) names.Add(other.name);
    }
    for (Language const& language : kLanguages) {
        if (IsSameCode(code, language.code)) names.Add(language.name);
    }
}

// Whether a text, which may come from anywhere, can be a language and a part of a file's name.
bool CanBeLanguage(std::string_view text) {
    constexpr std::size_t longest = 64;
    using namespace std::string_view_literals;
    return !text.empty() && text.size() <= longest && text.find_first_of("/\0"sv) == text.npos;
}

// A language, and the ones that it is a form of: fr of fr_CA, zh-Hant and zh of zh-Hant-TW.
void AddLanguage(std::string_view language, Names& names) {
    auto const named = std::find_if(std::begin(kLanguages), std::end(kLanguages),
                                    [&](Language const& known) { return known.name == language; });
    if (named != std::end(kLanguages)) {
        names.Add(language);
        return AddLanguage(named->code, names);
    }
    while (!language.empty()) {
        AddCode(language, names);
        language = language.substr(0, std::max<std::size_t>(language.find_last_of("_-") + 1, 1) - 1);
    }
}

}  // namespace

std::vector<std::string> LanguagesOfLocales(std::string_view locales) {
    std::vector<std::string> languages;
    while (!locales.empty()) {
        std::string_view const locale = locales.substr(0, locales.find(':'));
        locales.remove_prefix(std::min(locale.size() + 1, locales.size()));
        std::string_view const code = locale.substr(0, locale.find_first_of(".@"));
        if (!code.empty() && code != "C" && code != "POSIX") languages.emplace_back(code);
    }
    return languages;
}

std::vector<std::string> FoldersOfLanguages(std::vector<std::string> const& languages) {
    Names names;
    for (std::string const& language : languages) {
        if (CanBeLanguage(language)) AddLanguage(language, names);
    }
    return names.Take();
}

}  // namespace Platform
