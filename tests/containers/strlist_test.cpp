// The string list: texts and info fields, insertion and deletion, search, deep copy and moves.
#include <algorithm>
#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include <tessar/frame.h>
#include <tessar/strlist.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;
const std::string kNone = "<null>";
using Texts = std::vector<std::string>;
using Ints = std::vector<int32_t>;

// A list owned by the test, with the given texts appended ("<null>": a member without text) and info field f
// of member i set to infoBase + i.
struct List {
    tsStrList *handle;
    List(int32_t count, int32_t fields, const Texts &texts = {}, int32_t f = -1, int32_t infoBase = 0)
        : handle(tsStrList_create(count, fields))
    {
        int32_t last = -1;
        EXPECT_EQ(tsStrList_insertMember(&last, handle, -1, int32_t(texts.size())), 0);
        for (int32_t i = 0, first = last + 1 - int32_t(texts.size()); i < int32_t(texts.size()); ++i) {
            if (texts[size_t(i)] != kNone)
                tsStrList_setMember(handle, first + i, texts[size_t(i)].c_str(), nullptr);
            if (f >= 0) tsStrList_setInfoField(handle, first + i, f, infoBase + i);
        }
    }
    ~List() { tsStrList_destroy(handle); }
    operator tsStrList *() const { return handle; }
};

std::string textOf(const tsStrList *list, int32_t index)
{
    const char *text = nullptr;
    EXPECT_EQ(tsStrList_getMember(&text, nullptr, list, index), 0);
    return text != nullptr ? std::string(text) : kNone;
}

Texts textsOf(const tsStrList *list)
{
    Texts texts;
    for (int32_t i = 0; i < tsStrList_size(list); ++i)
        texts.push_back(textOf(list, i));
    return texts;
}

Ints infoOf(const tsStrList *list, int32_t member)
{
    Ints values(size_t(std::max(tsStrList_numInfoFields(list), 0)), -99);
    for (size_t f = 0; f < values.size(); ++f)
        EXPECT_EQ(tsStrList_getInfoField(&values[f], list, member, int32_t(f)), 0);
    return values;
}

TEST(StrList, NullListAnswers)
{
    int32_t value = 7;
    const char *text = nullptr;
    EXPECT_EQ((Ints{tsStrList_destroy(nullptr), tsStrList_size(nullptr), tsStrList_numInfoFields(nullptr),
                    tsStrList_getMemberIndex(nullptr, "a"), tsStrList_moveMembers(nullptr, 0, 1, 1)}),
              (Ints{0, -1, -1, -1, 0}));  // a null list is no failure for destroy and moves
    for (int32_t code :
         {tsStrList_setMember(nullptr, 0, "a", nullptr), tsStrList_getMember(&text, nullptr, nullptr, 0),
          tsStrList_setInfoField(nullptr, 0, 0, 1), tsStrList_getInfoField(&value, nullptr, 0, 0),
          tsStrList_insertMember(nullptr, nullptr, -1, 1), tsStrList_deleteMember(nullptr, 0, 1),
          tsStrList_copy(nullptr, nullptr)})
        EXPECT_EQ(code, kFail);
    EXPECT_EQ(value, 0);  // cleared before the test
}

TEST(StrList, SetMemberTextAndInfo)
{
    // Each row: text before (null: none), text given, text after: null leaves, empty clears, others replace.
    const std::tuple<const char *, const char *, std::string> rows[] = {
        {"old", nullptr, "old"}, {"old", "", kNone},   {"old", "new", "new"},
        {nullptr, "x", "x"},     {nullptr, "", kNone}, {nullptr, nullptr, kNone},
    };
    for (const auto &[before, given, after] : rows) {
        List list(1, 0);
        EXPECT_EQ(tsStrList_setMember(list, 0, before, nullptr), 0);
        EXPECT_EQ(tsStrList_setMember(list, 0, given, nullptr), 0);
        EXPECT_EQ(textOf(list, 0), after) << (before ? before : "null") << " <- " << (given ? given : "null");
    }
    // The text is copied; a member set from its own text keeps it.
    List list(2, 3), noFields(1, 0);
    std::string source = "P100";
    const char *own = nullptr;
    ASSERT_EQ(tsStrList_setMember(list, 1, source.c_str(), nullptr), 0);
    source[0] = 'Q';
    ASSERT_EQ(tsStrList_getMember(&own, nullptr, list, 1), 0);
    EXPECT_EQ(tsStrList_setMember(list, 1, own, nullptr), 0);
    EXPECT_EQ(textOf(list, 1), "P100");
    for (int32_t index : {-1, 2, 100}) {
        EXPECT_EQ(tsStrList_setMember(list, index, "a", nullptr), kFail) << index;
        EXPECT_EQ(tsStrList_getMember(&own, nullptr, list, index), kFail) << index;
    }
    // Info values are copied in; without values the fields are zeroed again, the text kept.
    const int32_t codes[3] = {4, 5, 6};
    ASSERT_EQ(tsStrList_setMember(list, 0, "P1", codes), 0);
    EXPECT_EQ(infoOf(list, 0), (Ints{4, 5, 6}));
    ASSERT_EQ(tsStrList_setMember(list, 0, nullptr, nullptr), 0);
    EXPECT_EQ(infoOf(list, 0), (Ints{0, 0, 0}));
    EXPECT_EQ(textOf(list, 0), "P1");
    const int32_t *info = codes;  // no fields: no array
    ASSERT_EQ(tsStrList_setMember(noFields, 0, "P1", codes), 0);
    ASSERT_EQ(tsStrList_getMember(nullptr, &info, noFields, 0), 0);
    EXPECT_EQ(info, nullptr);
}

TEST(StrList, InfoFieldsComeOnFirstNeed)
{
    List list(2, 2), noFields(1, 0);
    EXPECT_EQ(tsStrList_size(list), 2);
    EXPECT_EQ(tsStrList_numInfoFields(list), 2);
    ASSERT_EQ(tsStrList_setInfoField(list, 1, 1, 42), 0);
    const char *text = "x";
    const int32_t *info = &kFail;  // a new member has neither text nor info array
    ASSERT_EQ(tsStrList_getMember(&text, &info, list, 0), 0);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(info, nullptr);
    EXPECT_EQ(infoOf(list, 1), (Ints{0, 42}));
    EXPECT_EQ(infoOf(list, 0), (Ints{0, 0}));  // read as 0 without array
    EXPECT_EQ(tsStrList_setInfoField(noFields, 0, 0, 1), kFail);
    // Each row: member, field; all refused, and the value read is 0.
    for (const auto &[member, field] : {std::pair{2, 0}, {-1, 0}, {0, 2}, {0, -1}, {1, 5}}) {
        int32_t value = 9;
        EXPECT_EQ(tsStrList_setInfoField(list, member, field, 1), kFail) << member << "," << field;
        EXPECT_EQ(tsStrList_getInfoField(&value, list, member, field), kFail) << member << "," << field;
        EXPECT_EQ(value, 0);
    }
}

TEST(StrList, InsertAndDeleteMembers)
{
    // Each row: members before, index, how many, the new index reported, the texts after.
    const std::tuple<Texts, int32_t, int32_t, int32_t, Texts> inserts[] = {
        {{}, -1, 3, 2, {kNone, kNone, kNone}},
        {{"a", "b"}, -1, 1, 2, {"a", "b", kNone}},
        {{"a", "b", "c"}, 1, 2, 1, {"a", kNone, kNone, "b", "c"}},  // opened slots are emptied
        {{"a", "b"}, 0, 1, 0, {kNone, "a", "b"}},
        {{"a", "b"}, 2, 2, 2, {"a", "b", kNone, kNone}},
        {{"a"}, 0, 0, 0, {"a"}},
        {{"a"}, -1, 0, 0, {"a"}},
    };
    for (const auto &[before, index, count, reported, after] : inserts) {
        List list(0, 1, before);
        int32_t newIndex = -7;
        EXPECT_EQ(tsStrList_insertMember(&newIndex, list, index, count), 0);
        EXPECT_EQ(newIndex, reported) << index << " x" << count;
        EXPECT_EQ(textsOf(list), after) << index << " x" << count;
    }
    List two(2, 0);
    EXPECT_EQ(tsStrList_insertMember(nullptr, two, 3, 1), kFail);
    EXPECT_EQ(tsStrList_insertMember(nullptr, two, -2, 1), kFail);
    EXPECT_EQ(tsStrList_size(two), 2);

    // Each row: index, how many, result, texts left of {a, b, c, d}; the count stops at the end, below 1
    // does nothing, even with a bad index.
    const Texts all{"a", "b", "c", "d"};
    const std::tuple<int32_t, int32_t, int32_t, Texts> deletes[] = {
        {1, 2, 0, {"a", "d"}}, {2, 10, 0, {"a", "b"}}, {0, 4, 0, {}},      {3, 1, 0, {"a", "b", "c"}},
        {1, 0, 0, all},        {9, 0, 0, all},         {4, 1, kFail, all}, {-1, 1, kFail, all},
    };
    for (const auto &[index, count, result, after] : deletes) {
        List list(0, 2, all, 1, 100);
        EXPECT_EQ(tsStrList_deleteMember(list, index, count), result) << index;
        EXPECT_EQ(textsOf(list), after) << index << " x" << count;
        // The info fields travel with their texts: "a" had 100, "b" 101, ...
        for (int32_t i = 0; i < tsStrList_size(list); ++i)
            EXPECT_EQ(infoOf(list, i)[1], 100 + (textOf(list, i)[0] - 'a'));
    }
}

TEST(StrList, GetMemberIndexAndCopy)
{
    List list(0, 0, {"P1", kNone, "P2", "P1", "p2"}), full(0, 0, {"A"});
    // Each row: text looked for, index found; a null text counts as empty.
    const std::pair<const char *, int32_t> rows[] = {{"P1", 0}, {"P2", 2},    {"p2", 4}, {"P3", -1},
                                                     {"", 1},   {nullptr, 1}, {"P", -1}};
    for (const auto &[text, index] : rows)
        EXPECT_EQ(tsStrList_getMemberIndex(list, text), index) << (text ? text : "null");
    EXPECT_EQ(tsStrList_getMemberIndex(full, nullptr), -1);

    List source(0, 2, {"A", kNone, "C"}, 1, 5), destination(0, 2, {"old1", "old2", "old3", "old4"}),
        other(0, 3);
    EXPECT_EQ(tsStrList_copy(other, source), kFail);  // different numbers of info fields
    EXPECT_EQ(tsStrList_copy(nullptr, source), kFail);
    EXPECT_EQ(tsStrList_copy(destination, nullptr), kFail);
    ASSERT_EQ(tsStrList_copy(destination, source), 0);
    // The copy shares nothing with its source, and survives a copy onto itself.
    ASSERT_EQ(tsStrList_setMember(source, 0, "Z", nullptr), 0);
    ASSERT_EQ(tsStrList_setInfoField(source, 0, 1, 6), 0);
    ASSERT_EQ(tsStrList_deleteMember(source, 2, 1), 0);
    ASSERT_EQ(tsStrList_copy(destination, destination), 0);
    EXPECT_EQ(textsOf(destination), (Texts{"A", kNone, "C"}));
    EXPECT_EQ(infoOf(destination, 0), (Ints{0, 5}));
}

TEST(StrList, MoveMembersReadTheListAsItWas)
{
    // Each row: destination, source, how many, result, texts after, from {a, b, <null>, d, e}. Overlapping
    // ranges shift as a block (up: 3 keeps "d" as its source is null; down: the null source leaves "b" at 1).
    const Texts start{"a", "b", kNone, "d", "e"};
    const std::tuple<int32_t, int32_t, int32_t, int32_t, Texts> rows[] = {
        {3, 0, 2, 0, {"a", "b", kNone, "a", "b"}},
        {1, 0, 3, 0, {"a", "a", "b", "d", "e"}},
        {0, 3, 2, 0, {"d", "e", kNone, "d", "e"}},
        {0, 1, 4, 0, {"b", "b", "d", "e", "e"}},
        {2, 2, 1, 0, start},
        {0, 0, 0, kFail, start},
        {4, 0, 2, kFail, start},
        {0, 4, 2, kFail, start},
        {-1, 0, 1, kFail, start},
    };
    for (const auto &[to, from, count, result, after] : rows) {
        List list(0, 1, start, 0, 1);
        EXPECT_EQ(tsStrList_moveMembers(list, to, from, count), result)
            << to << " <- " << from << " x" << count;
        EXPECT_EQ(textsOf(list), after) << to << " <- " << from << " x" << count;
        // The info fields follow the source members, the null one included.
        for (int32_t i = 0; result == 0 && i < count; ++i)
            EXPECT_EQ(infoOf(list, to + i)[0], from + i + 1);
    }
}

TEST(StrList, FieldBookOfPointNames)
{
    // A traverse with a code and a survey day: a station missed on day 1 goes in after ST2 on day 2, then
    // ST3, a blunder, is deleted and the benchmark moves up one place.
    List book(0, 2, {"ST1", "ST2", "ST3", "BM7"});
    for (int32_t i = 0; i < 4; ++i)
        ASSERT_EQ(tsStrList_setMember(book, i, nullptr, (Ints{i < 3 ? 10 : 20, 1}).data()), 0);
    int32_t at = -1;
    ASSERT_EQ(tsStrList_insertMember(&at, book, tsStrList_getMemberIndex(book, "ST2") + 1, 1), 0);
    ASSERT_EQ(tsStrList_setMember(book, at, "ST2A", (Ints{10, 2}).data()), 0);
    EXPECT_EQ(textsOf(book), (Texts{"ST1", "ST2", "ST2A", "ST3", "BM7"}));
    EXPECT_EQ(infoOf(book, 2), (Ints{10, 2}));
    EXPECT_EQ(infoOf(book, 4), (Ints{20, 1}));
    ASSERT_EQ(tsStrList_deleteMember(book, tsStrList_getMemberIndex(book, "ST3"), 1), 0);
    EXPECT_EQ(tsStrList_getMemberIndex(book, "BM7"), 3);
    EXPECT_EQ(tsStrList_getMemberIndex(book, "ST3"), -1);
}

}  // namespace
