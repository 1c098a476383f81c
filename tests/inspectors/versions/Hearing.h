#pragma once

// A semantics that writes down what it is told.

#include <string>
#include <utility>

#include "versions/VersionLanguage.h"

class Hearing final : public VersionRPNSemantics {
  public:
    void Reset() override { Add("reset"); }
    void PushNumber(unsigned long number) override { Add(std::to_string(number)); }
    void BuildSingle() override { Add("single"); }
    void BuildVers() override { Add("vers"); }
    void Addbugrev() override { Add("bug"); }
    void AddStage1() override { Add("stage1"); }
    void AddStage2() override { Add("stage2"); }
    void AddStage3() override { Add("stage3"); }

    /// What was heard since the last call, with blanks between.
    std::string Heard() { return std::exchange(heard, {}); }

  private:
    void Add(std::string const& what) { heard += (heard.empty() ? "" : " ") + what; }

    std::string heard;
};
