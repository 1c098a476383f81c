#pragma once

#include <cstdint>

#include "Evaluator/Stacks.h"
#include "versions/Version.h"
#include "versions/VersionLanguage.h"

/// Computes the numbers of a version.
class VersionAutomaton final : public VersionRPNSemantics {
  public:
    /// Forgets all numbers; the result is the version of zeros.
    void Reset() override;
    void PushNumber(unsigned long number) override;
    void BuildSingle() override;
    void BuildVers() override;
    void Addbugrev() override;
    void AddStage1() override;
    void AddStage2() override;
    void AddStage3() override;

    /// What has been computed so far.
    MacVersion const& Result() const { return result; }

  private:
    // The result is a numeric version of these and zeros.
    void Begin(std::uint32_t major, std::uint32_t minor);
    // The number with `depth` numbers above it, when it is no larger than `most`.
    std::uint32_t Number(unsigned long depth, std::uint32_t most) const;

    FiniteStackBase<std::uint32_t, 6> numbers;
    MacVersion result;
};
