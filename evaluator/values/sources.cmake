# The host's value services, relative to evaluator/.
set(EVALUATOR_VALUES_SOURCES
  values/Arithmetic.cpp
  values/Context.cpp
  values/Exceptions.cpp
  values/Fingerprint.cpp
  values/Lexing.cpp
  values/Network.cpp
  values/Output.cpp
  values/PlatformStrings.cpp
  values/Stacks.cpp
  values/Text.cpp
  values/Time.cpp
  values/TimeText.cpp
  values/Values.cpp
)
