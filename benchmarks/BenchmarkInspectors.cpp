// An inspector library whose inspectors do next to nothing, so that what is measured is the way to them and
// back.

#include "frame/Adapters.h"

namespace {

struct token {
    long long id;
};

integer id_of(token const& object) { return object.id; }
token twin_of(token const& object) { return object; }
token ghost_of(token const&) { throw NoSuchObject(); }

// Tokens with the numbers from 1 to an index.
class tokens_up_to {
  public:
    token First(integer const& last) { return Next(last); }
    token Next(integer const& last) {
        if (at >= last) throw NoSuchObject();
        return {++at};
    }

  private:
    long long at = 0;
};

struct Module {
    TypeRecord<token> type{"token"};
    IteratedPropertyByIndexOfWorld<tokens_up_to, token, integer> tokens{
        "token up to", "tokens up to", "integer", "token", &tokens_up_to::First, &tokens_up_to::Next};
    Property<token, integer> id{"id", "ids", "token", "integer", id_of};
    Property<token, token> twin{"twin", "twins", "token", "token", twin_of};
    Property<token, token> ghost{"ghost", "ghosts", "token", "token", ghost_of};
};

Module module;

}  // namespace
