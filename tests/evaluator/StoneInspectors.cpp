// An inspector library made for the tests of what takes many and of what compares. Its stones count
// themselves while they live; two stones are equal when their weights are, and a stone without weight does
// not compare.

#include <string>

#include "Evaluator/Context.h"
#include "Evaluator/Text.h"
#include "frame/Adapters.h"

namespace {

long livingStones = 0;
long countedStones = 0;

// The tens of a stone's number are its weight. It may be a pebble as well, whose base it is.
class stone {
  public:
    explicit stone(long long number) : id(number) { ++livingStones; }
    stone(stone const& other) : id(other.id) { ++livingStones; }
    ~stone() { --livingStones; }
    long long Number() const { return id; }
    long long Weight() const {
        if (id >= 1000) throw NoSuchObject();
        return id / 10;
    }

  private:
    long long id;
};
class pebble : public stone {
  public:
    using stone::stone;
};

boolean operator==(stone const& left, stone const& right) { return left.Weight() == right.Weight(); }
boolean operator<(stone const& left, stone const& right) { return left.Weight() < right.Weight(); }
boolean operator<=(stone const& left, stone const& right) { return left.Weight() <= right.Weight(); }

// Every cloud is less than every other, which is no order.
struct cloud {
    long long number;
};
boolean operator<(cloud const&, cloud const&) { return true; }

stone stone_numbered(unsigned long long number) { return stone(static_cast<long long>(number)); }
pebble pebble_numbered(unsigned long long number) { return pebble(static_cast<long long>(number)); }
cloud cloud_numbered(unsigned long long number) { return {static_cast<long long>(number)}; }
integer number_of(stone const& object) { return object.Number(); }
integer number_of_cloud(cloud const& object) { return object.number; }
inspector_string name_of(stone const& object) {
    std::string name = "stone " + std::to_string(object.Number());
    return MakeString(ConstData(reinterpret_cast<unsigned char const*>(name.data()), name.size()));
}
inspector_string name_of_pebble(pebble const& object) { return name_of(object); }
integer shine_of(pebble const&) { return 1; }
integer pebble_as_integer(pebble const& object) { return -object.Number(); }
integer living_stones() { return livingStones; }
integer counted_stones() { return countedStones; }

// Stones from 1 to an index.
class heap {
  public:
    stone First(integer const& last) { return Next(last); }
    stone Next(integer const& last) {
        if (at >= last) throw NoSuchObject();
        ++countedStones;
        return stone(++at);
    }

  private:
    long long at = 0;
};

struct Module {
    TypeRecord<stone> stoneType{"stone"};
    TypeRecord<pebble> pebbleType{"pebble", "stone"};
    TypeRecord<cloud> cloudType{"cloud"};
    NumberedGlobalProperty<stone> stoneNumbered{"numbered stone", "numbered stones", "stone", stone_numbered};
    NumberedGlobalProperty<pebble> pebbleNumbered{"numbered pebble", "numbered pebbles", "pebble",
                                                  pebble_numbered};
    NumberedGlobalProperty<cloud> cloudNumbered{"cloud", "clouds", "cloud", cloud_numbered};
    IteratedPropertyByIndexOfWorld<heap, stone, integer> stones{"stone", "stones",     "integer",
                                                                "stone", &heap::First, &heap::Next};
    Property<stone, integer> number{"mark", "marks", "stone", "integer", number_of};
    Property<cloud, integer> cloudNumber{"mark", "marks", "cloud", "integer", number_of_cloud};
    Property<stone, inspector_string> name{"name", "names", "stone", "string", name_of};
    Property<pebble, integer> shine{"shine", "shines", "pebble", "integer", shine_of};
    Property<pebble, inspector_string> pebbleName{"name", "names", "pebble", "string", name_of_pebble};
    Cast<stone, inspector_string> text{"string", "stone", "string", name_of};
    Cast<stone, integer> asNumber{"integer", "stone", "integer", number_of};
    Cast<pebble, integer> pebbleAsNumber{"integer", "pebble", "integer", pebble_as_integer};
    GlobalProperty<integer> living{"living stone", "living stones", "integer", living_stones};
    GlobalProperty<integer> counted{"counted stone", "counted stones", "integer", counted_stones};
    RelationEqual<stone, stone> equal{"stone", "stone"};
    RelationLess<stone, stone> less{"stone", "stone"};
    RelationLessOrEqual<stone, stone> lessOrEqual{"stone", "stone"};
    RelationLess<cloud, cloud> lessCloud{"cloud", "cloud"};
};

Module module;

}  // namespace
