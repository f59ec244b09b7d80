#include "qr_config/config/model/field_list.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

namespace {

using Field = ConfigManagerTypes::Field;
using List = tnode<Field>;

static_assert(std::is_same_v<List::iterator::difference_type, long long>);
static_assert(std::is_same_v<List::const_iterator::difference_type, long long>);

std::vector<Field> Contents(const List& list) {
  return {list.begin(), list.end()};
}

TEST(FieldListTest, AddingRefusesEqualFieldsOnly) {
  List list;
  EXPECT_TRUE(list.push_front(Field("A", std::int32_t{1})));
  EXPECT_FALSE(list.push_back(Field("A", std::int32_t{1})));
  EXPECT_FALSE(list.push_front(Field("A", std::int32_t{1})));
  EXPECT_TRUE(list.push_back(Field("A", std::int32_t{2})));  // same name, other value
  EXPECT_TRUE(list.push_back(Field("A", "1")));              // same name, other tag
  EXPECT_EQ(Contents(list), (std::vector<Field>{Field("A", std::int32_t{1}),
                                                Field("A", std::int32_t{2}), Field("A", "1")}));

  auto [at, added] = list.insert(list.end(), Field("B", true));
  EXPECT_TRUE(added);
  EXPECT_EQ(&*at, &list.back());
  auto [equal, again] = list.insert(list.begin(), Field("A", std::int32_t{2}));
  EXPECT_FALSE(again);
  EXPECT_EQ(&*equal, &*++list.begin());
  EXPECT_EQ(list.size(), 4u);
}

TEST(FieldListTest, RemoveTakesEveryEqualFieldIncludingItsOwnArgument) {
  List list;
  list.push_back(Field("A", "x"));
  list.push_back(Field("B", "y"));
  list.push_back(Field("A", "z"));
  list.back().Update("x");  // two equal fields now; a copy keeps both
  List copy = list;
  ASSERT_EQ(copy.size(), 3u);
  copy.remove(Field("A", "x"));
  EXPECT_EQ(Contents(copy), (std::vector<Field>{Field("B", "y")}));

  list.remove(list.front());  // the argument is an element: compared first, removed last
  EXPECT_EQ(Contents(list), (std::vector<Field>{Field("B", "y")}));
  list.remove(Field("missing", true));
  EXPECT_EQ(list.size(), 1u);
  list.erase(list.begin(), list.end());
  EXPECT_TRUE(list.empty());
}

}  // namespace
