#include "qr_config/config/model/field_list.h"

#include <gtest/gtest.h>

#include <new>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "qr_config/config/model/model_builder.h"

namespace {

using Field = ConfigManagerTypes::Field;
using List = tnode<Field>;

static_assert(std::is_same_v<List::iterator::difference_type, long long>);
static_assert(std::is_same_v<List::const_iterator::difference_type, long long>);

std::vector<Field> Contents(const List& list) {
  return {list.begin(), list.end()};
}

// What the randomised comparison below does not reach: a refused insert points at the equal
// field, and remove() takes an element of the list itself as its argument (compared first,
// removed last).
TEST(FieldListTest, RefusedInsertPointsAtTheEqualFieldAndRemoveTakesItsOwnElement) {
  List list;
  list.push_back(Field("A", "x"));
  list.push_back(Field("B", "y"));
  auto [equal, added] = list.insert(list.begin(), Field("B", "y"));
  EXPECT_FALSE(added);
  EXPECT_EQ(&*equal, &list.back());
  ModelBuilder::Append(list, Field("A", "x"));  // a second equal field, without the scan
  list.remove(list.front());
  EXPECT_EQ(Contents(list), (std::vector<Field>{Field("B", "y")}));
}

// The list against a plain vector of (address, value) through a long run of mixed edits:
// same order both ways, every element at the address it was made at, and the push_back rule
// kept. The edits free slots, reuse them, grow the list by blocks and empty it.
TEST(FieldListTest, MatchesAPlainListThroughMixedEditsAndKeepsAddresses) {
  struct Entry {
    const Field* Address;
    Field Value;
  };
  std::mt19937 random(17);
  const auto pick = [&random](std::size_t count) {
    return static_cast<std::size_t>(random() % count);
  };
  const auto make = [&]() {
    const std::string name(1, static_cast<char>('A' + pick(4)));
    switch (pick(3)) {
      case 0:
        return Field(name, static_cast<std::int32_t>(pick(3)));
      case 1:
        return Field(name, std::string(20, 'x'));  // a text too long to live in the field
      default:
        return Field(name, pick(2) == 0);
    }
  };
  List list;
  std::vector<Entry> model;
  const auto check = [&](int step) {
    ASSERT_EQ(list.size(), model.size()) << "step " << step;
    auto it = list.begin();
    for (const Entry& entry : model) {
      ASSERT_EQ(&*it, entry.Address) << "step " << step;
      ASSERT_EQ(*it, entry.Value) << "step " << step;
      ++it;
    }
    ASSERT_EQ(it, list.end());
    for (auto entry = model.rbegin(); entry != model.rend(); ++entry)
      ASSERT_EQ(&*--it, entry->Address) << "step " << step;
  };
  const auto position = [&](std::size_t index) {
    auto it = list.begin();
    std::advance(it, static_cast<long long>(index));
    return it;
  };
  const auto contains = [&](const Field& value) {
    for (const Entry& entry : model)
      if (entry.Value == value) return true;
    return false;
  };
  for (int step = 0; step < 3000; ++step) {
    const Field value = make();
    const std::size_t at = pick(model.size() + 1);
    switch (pick(model.size() > 40 ? 8 : 6)) {  // a long list gets more removals
      case 0:
        ASSERT_EQ(list.push_back(value), !contains(value));
        if (model.size() < list.size()) model.push_back({&list.back(), value});
        break;
      case 1:
        ASSERT_EQ(list.push_front(value), !contains(value));
        if (model.size() < list.size()) model.insert(model.begin(), {&list.front(), value});
        break;
      case 2: {
        const bool fresh = !contains(value);
        const auto [where, added] = list.insert(position(at), value);
        ASSERT_EQ(added, fresh);
        if (added) model.insert(model.begin() + static_cast<long>(at), {&*where, value});
        break;
      }
      case 3: {  // what the loaders do: room first, then additions without the scan
        const std::string text(10 + pick(20), 't');
        ModelBuilder::Reserve(list, 4, pick(2) * (2 * ModelBuilder::TextBytes(value) + 40));
        const Field& copied = ModelBuilder::AppendCopy(list, value);  // text in the block
        model.push_back({&copied, value});
        const Field& made = ModelBuilder::AppendText(list, "T", text);
        model.push_back({&made, Field("T", text)});
        const Field& plain = ModelBuilder::Append(list, value);
        model.push_back({&plain, value});
        Field& updated = ModelBuilder::AppendCopy(list, value);  // its block text is replaced
        if (updated.ValueType() == Field::String) updated.Update(std::string(25, 'u'));
        model.push_back({&updated, updated});
        break;
      }
      case 4:
        if (model.empty()) break;
        if (at == model.size()) {
          list.pop_back();
          model.pop_back();
        } else {
          list.erase(position(at));
          model.erase(model.begin() + static_cast<long>(at));
        }
        break;
      case 5:
        if (pick(20) == 0) {
          list.clear();
          model.clear();
        }
        break;
      case 6:
        list.erase(position(at), list.end());
        model.erase(model.begin() + static_cast<long>(at), model.end());
        break;
      default:
        list.remove(value);
        for (auto it = model.begin(); it != model.end();)
          it = it->Value == value ? model.erase(it) : it + 1;
        break;
    }
    check(step);
  }
}

// A field whose long text its list's block holds behaves as any field: copies and
// assignments of fields and lists own their texts, an update replaces the text, and all of them
// outlive the list.
TEST(FieldListTest, TextsKeptInTheListsBlockAreNeverShared) {
  const std::string longText(30, 'x');
  std::vector<Field> kept;
  Field assigned("a", true);
  List assignedList;
  {
    List list;
    ModelBuilder::Reserve(list, 2, 2 * ModelBuilder::TextBytes(longText.size()));
    Field& copied = ModelBuilder::AppendCopy(list, Field("c", longText));
    const Field& made = ModelBuilder::AppendText(list, "m", longText);
    kept.push_back(copied);
    kept.push_back(made);
    assigned = made;
    assignedList = list;
    copied.Update(std::string(40, 'y'));
    kept.push_back(copied);
    List copy(list);
    list.erase(list.begin());
    kept.push_back(copy.front());
  }
  EXPECT_EQ(kept, (std::vector<Field>{Field("c", longText), Field("m", longText),
                                      Field("c", std::string(40, 'y')),
                                      Field("c", std::string(40, 'y'))}));
  EXPECT_EQ(assigned, Field("m", longText));
  EXPECT_EQ(Contents(assignedList),
            (std::vector<Field>{Field("c", longText), Field("m", longText)}));
}

// A value that counts its living copies and can be told to fail its n-th copy.
struct Flaky {
  static int live;
  static int copiesLeft;  // negative: unlimited

  explicit Flaky(int value) : Value(value) { ++live; }
  Flaky(const Flaky& other) : Value(other.Value) {
    if (copiesLeft == 0) throw std::bad_alloc();
    if (copiesLeft > 0) --copiesLeft;
    ++live;
  }
  ~Flaky() { --live; }
  bool operator==(const Flaky& other) const { return Value == other.Value; }
  int Value;
};
int Flaky::live = 0;
int Flaky::copiesLeft = -1;

TEST(FieldListTest, FailedCopiesChangeNothingAndLeaveNothingBehind) {
  {
    tnode<Flaky> source;
    for (int i = 0; i < 10; ++i) source.push_back(Flaky(i));
    tnode<Flaky> target;
    target.push_back(Flaky(-1));
    for (int fail = 0; fail < 10; ++fail) {
      Flaky::copiesLeft = fail;
      EXPECT_THROW(target = source, std::bad_alloc);
      EXPECT_THROW(tnode<Flaky>{source}, std::bad_alloc);
      Flaky::copiesLeft = 0;
      EXPECT_THROW(target.push_back(Flaky(fail + 100)), std::bad_alloc);
      EXPECT_THROW(ModelBuilder::Append(target, Flaky(fail + 100)), std::bad_alloc);
      Flaky::copiesLeft = -1;
      ASSERT_EQ(target.size(), 1u);
      EXPECT_EQ(target.front().Value, -1);
      EXPECT_EQ(Flaky::live, 11);
    }
    target = source;  // the slots of the failed additions are reused or released
    EXPECT_EQ(target.size(), 10u);
    EXPECT_EQ(target.back().Value, 9);
  }
  EXPECT_EQ(Flaky::live, 0);
}

}  // namespace
