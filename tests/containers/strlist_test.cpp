// The string list: texts copied in and cleared by an empty text, info fields
// created on first need, insertion and deletion at the ends and in the
// middle, search, deep copy, and moves of overlapping ranges.
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tessar/frame.h>
#include <tessar/strlist.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;
const std::string kNone = "<null>";

// A list owned by the test, destroyed at the end of the scope.
struct List {
    tsStrList *handle;
    List(int32_t count, int32_t fields) : handle(tsStrList_create(count, fields)) {}
    List(const List &) = delete;
    List &operator=(const List &) = delete;
    ~List() { tsStrList_destroy(handle); }
    operator tsStrList *() const { return handle; }
};

// A list of the given texts ("<null>" for a member without text), no info fields.
void fill(tsStrList *list, const std::vector<std::string> &texts)
{
    int32_t first = -1;
    ASSERT_EQ(tsStrList_insertMember(&first, list, -1, static_cast<int32_t>(texts.size())), 0);
    first -= static_cast<int32_t>(texts.size()) - 1;
    for (size_t i = 0; i < texts.size(); ++i) {
        if (texts[i] == kNone) continue;
        ASSERT_EQ(tsStrList_setMember(list, first + static_cast<int32_t>(i), texts[i].c_str(), nullptr), 0);
    }
}

std::string textOf(const tsStrList *list, int32_t index)
{
    const char *text = nullptr;
    EXPECT_EQ(tsStrList_getMember(&text, nullptr, list, index), 0);
    return text != nullptr ? std::string(text) : kNone;
}

std::vector<std::string> textsOf(const tsStrList *list)
{
    std::vector<std::string> texts;
    for (int32_t i = 0; i < tsStrList_size(list); ++i)
        texts.push_back(textOf(list, i));
    return texts;
}

std::vector<int32_t> infoOf(const tsStrList *list, int32_t member)
{
    std::vector<int32_t> values;
    for (int32_t f = 0; f < tsStrList_numInfoFields(list); ++f) {
        int32_t value = -99;
        EXPECT_EQ(tsStrList_getInfoField(&value, list, member, f), 0);
        values.push_back(value);
    }
    return values;
}

TEST(StrList, NullListAnswers)
{
    int32_t value = 7;
    const char *text = nullptr;
    EXPECT_EQ(tsStrList_destroy(nullptr), 0);
    EXPECT_EQ(tsStrList_size(nullptr), -1);
    EXPECT_EQ(tsStrList_numInfoFields(nullptr), -1);
    EXPECT_EQ(tsStrList_setMember(nullptr, 0, "a", nullptr), kFail);
    EXPECT_EQ(tsStrList_getMember(&text, nullptr, nullptr, 0), kFail);
    EXPECT_EQ(tsStrList_setInfoField(nullptr, 0, 0, 1), kFail);
    EXPECT_EQ(tsStrList_getInfoField(&value, nullptr, 0, 0), kFail);
    EXPECT_EQ(value, 0);  // cleared before the test
    EXPECT_EQ(tsStrList_insertMember(nullptr, nullptr, -1, 1), kFail);
    EXPECT_EQ(tsStrList_deleteMember(nullptr, 0, 1), kFail);
    EXPECT_EQ(tsStrList_getMemberIndex(nullptr, "a"), -1);
    EXPECT_EQ(tsStrList_copy(nullptr, nullptr), kFail);
    EXPECT_EQ(tsStrList_moveMembers(nullptr, 0, 1, 1), 0);  // a null list is not a failure here
}

TEST(StrList, NewMembersAreEmpty)
{
    List list(3, 2);
    ASSERT_NE(list.handle, nullptr);
    EXPECT_EQ(tsStrList_size(list), 3);
    EXPECT_EQ(tsStrList_numInfoFields(list), 2);
    const char *text = "x";
    const int32_t *info = nullptr;
    for (int32_t i = 0; i < 3; ++i) {
        EXPECT_EQ(tsStrList_getMember(&text, &info, list, i), 0);
        EXPECT_EQ(text, nullptr);
        EXPECT_EQ(info, nullptr);  // no info array until first needed
        EXPECT_EQ(infoOf(list, i), (std::vector<int32_t>{0, 0}));
    }
    List none(0, 0);
    EXPECT_EQ(tsStrList_size(none), 0);
}

TEST(StrList, SetMemberText)
{
    // Each row: the member's text before, the text given, the text after.
    struct Row {
        const char *before;
        const char *given;
        std::string after;
    } rows[] = {
        {"old", nullptr, "old"},  // null leaves the text
        {"old", "", kNone},       // empty clears it
        {"old", "new", "new"},    // any other replaces it
        {nullptr, "x", "x"},     {nullptr, "", kNone}, {nullptr, nullptr, kNone},
    };
    for (const Row &row : rows) {
        List list(1, 0);
        if (row.before != nullptr) {
            ASSERT_EQ(tsStrList_setMember(list, 0, row.before, nullptr), 0);
        }
        EXPECT_EQ(tsStrList_setMember(list, 0, row.given, nullptr), 0);
        EXPECT_EQ(textOf(list, 0), row.after)
            << (row.before ? row.before : "null") << " <- " << (row.given ? row.given : "null");
    }
}

TEST(StrList, SetMemberCopiesAndRefusesOutsideIndices)
{
    List list(2, 0);
    std::string source = "P100";
    ASSERT_EQ(tsStrList_setMember(list, 1, source.c_str(), nullptr), 0);
    source[0] = 'Q';
    EXPECT_EQ(textOf(list, 1), "P100");
    // A member set from its own text keeps it.
    const char *own = nullptr;
    ASSERT_EQ(tsStrList_getMember(&own, nullptr, list, 1), 0);
    EXPECT_EQ(tsStrList_setMember(list, 1, own, nullptr), 0);
    EXPECT_EQ(textOf(list, 1), "P100");
    for (int32_t index : {-1, 2, 100}) {
        EXPECT_EQ(tsStrList_setMember(list, index, "a", nullptr), kFail) << index;
        EXPECT_EQ(tsStrList_getMember(&own, nullptr, list, index), kFail) << index;
    }
}

TEST(StrList, SetMemberStartsInfoFromZero)
{
    List list(1, 3);
    const int32_t codes[3] = {4, 5, 6};
    ASSERT_EQ(tsStrList_setMember(list, 0, "P1", codes), 0);
    EXPECT_EQ(infoOf(list, 0), (std::vector<int32_t>{4, 5, 6}));
    // Without values the fields are zeroed again, the text kept.
    ASSERT_EQ(tsStrList_setMember(list, 0, nullptr, nullptr), 0);
    EXPECT_EQ(infoOf(list, 0), (std::vector<int32_t>{0, 0, 0}));
    EXPECT_EQ(textOf(list, 0), "P1");

    List noFields(1, 0);
    const int32_t *info = codes;
    ASSERT_EQ(tsStrList_setMember(noFields, 0, "P1", codes), 0);
    ASSERT_EQ(tsStrList_getMember(nullptr, &info, noFields, 0), 0);
    EXPECT_EQ(info, nullptr);
}

TEST(StrList, InfoFields)
{
    List list(2, 2);
    ASSERT_EQ(tsStrList_setInfoField(list, 1, 1, 42), 0);
    EXPECT_EQ(infoOf(list, 1), (std::vector<int32_t>{0, 42}));
    EXPECT_EQ(infoOf(list, 0), (std::vector<int32_t>{0, 0}));  // member 0 still without array
    // Each row: member, field; all refused, and the value read is 0.
    struct Row {
        int32_t member, field;
    } bad[] = {{2, 0}, {-1, 0}, {0, 2}, {0, -1}, {1, 5}};
    for (const Row &row : bad) {
        int32_t value = 9;
        EXPECT_EQ(tsStrList_setInfoField(list, row.member, row.field, 1), kFail)
            << row.member << "," << row.field;
        EXPECT_EQ(tsStrList_getInfoField(&value, list, row.member, row.field), kFail);
        EXPECT_EQ(value, 0);
    }
    List noFields(1, 0);
    EXPECT_EQ(tsStrList_setInfoField(noFields, 0, 0, 1), kFail);
}

TEST(StrList, InsertMember)
{
    // Each row: members before, index, how many, the new index reported, the texts after.
    struct Row {
        std::vector<std::string> before;
        int32_t index, count, newIndex;
        std::vector<std::string> after;
    } rows[] = {
        {{}, -1, 3, 2, {kNone, kNone, kNone}},
        {{"a", "b"}, -1, 1, 2, {"a", "b", kNone}},
        {{"a", "b", "c"}, 1, 2, 1, {"a", kNone, kNone, "b", "c"}},  // opened slots are emptied
        {{"a", "b"}, 0, 1, 0, {kNone, "a", "b"}},
        {{"a", "b"}, 2, 2, 2, {"a", "b", kNone, kNone}},
        {{"a"}, 0, 0, 0, {"a"}},
        {{"a"}, -1, 0, 0, {"a"}},
    };
    for (const Row &row : rows) {
        List list(0, 1);
        fill(list, row.before);
        int32_t newIndex = -7;
        EXPECT_EQ(tsStrList_insertMember(&newIndex, list, row.index, row.count), 0);
        EXPECT_EQ(newIndex, row.newIndex) << row.index << " x" << row.count;
        EXPECT_EQ(textsOf(list), row.after) << row.index << " x" << row.count;
        for (int32_t i = 0; i < tsStrList_size(list); ++i) {
            const int32_t *info = nullptr;
            ASSERT_EQ(tsStrList_getMember(nullptr, &info, list, i), 0);
            if (row.after[static_cast<size_t>(i)] == kNone) {
                EXPECT_EQ(info, nullptr);
            }
        }
    }
    List list(2, 0);
    EXPECT_EQ(tsStrList_insertMember(nullptr, list, 3, 1), kFail);
    EXPECT_EQ(tsStrList_insertMember(nullptr, list, -2, 1), kFail);
    EXPECT_EQ(tsStrList_size(list), 2);
}

TEST(StrList, DeleteMember)
{
    // Each row: index, how many, result, the texts left of {a, b, c, d}.
    struct Row {
        int32_t index, count, result;
        std::vector<std::string> after;
    } rows[] = {
        {1, 2, 0, {"a", "d"}},
        {2, 10, 0, {"a", "b"}},  // limited by the end
        {0, 4, 0, {}},
        {3, 1, 0, {"a", "b", "c"}},
        {1, 0, 0, {"a", "b", "c", "d"}},  // below 1 does nothing
        {9, 0, 0, {"a", "b", "c", "d"}},  // ... even with a bad index
        {4, 1, kFail, {"a", "b", "c", "d"}},
        {-1, 1, kFail, {"a", "b", "c", "d"}},
    };
    for (const Row &row : rows) {
        List list(0, 2);
        fill(list, {"a", "b", "c", "d"});
        for (int32_t i = 0; i < 4; ++i)
            ASSERT_EQ(tsStrList_setInfoField(list, i, 1, 100 + i), 0);
        EXPECT_EQ(tsStrList_deleteMember(list, row.index, row.count), row.result) << row.index;
        EXPECT_EQ(textsOf(list), row.after) << row.index << " x" << row.count;
        // The info fields travel with their texts: "a" had 100, "b" 101, ...
        for (int32_t i = 0; i < tsStrList_size(list); ++i)
            EXPECT_EQ(infoOf(list, i)[1], 100 + (textOf(list, i)[0] - 'a'));
    }
}

TEST(StrList, GetMemberIndex)
{
    List list(0, 0);
    fill(list, {"P1", kNone, "P2", "P1", "p2"});
    // Each row: text looked for, index found.
    const std::pair<const char *, int32_t> rows[] = {
        {"P1", 0}, {"P2", 2}, {"p2", 4}, {"P3", -1}, {"", 1}, {nullptr, 1}, {"P", -1},
    };
    for (const auto &[text, index] : rows)
        EXPECT_EQ(tsStrList_getMemberIndex(list, text), index) << (text ? text : "null");
    List full(0, 0);
    fill(full, {"A"});
    EXPECT_EQ(tsStrList_getMemberIndex(full, nullptr), -1);
}

TEST(StrList, CopyIsDeep)
{
    List source(0, 2), destination(0, 2), other(0, 3);
    fill(source, {"A", kNone, "C"});
    ASSERT_EQ(tsStrList_setInfoField(source, 0, 1, 5), 0);
    fill(destination, {"old1", "old2", "old3", "old4"});

    EXPECT_EQ(tsStrList_copy(other, source), kFail);
    EXPECT_EQ(tsStrList_copy(nullptr, source), kFail);
    EXPECT_EQ(tsStrList_copy(destination, nullptr), kFail);
    ASSERT_EQ(tsStrList_copy(destination, source), 0);
    EXPECT_EQ(textsOf(destination), (std::vector<std::string>{"A", kNone, "C"}));
    EXPECT_EQ(infoOf(destination, 0), (std::vector<int32_t>{0, 5}));

    // The copy shares nothing with its source.
    const char *a = nullptr, *b = nullptr;
    ASSERT_EQ(tsStrList_getMember(&a, nullptr, source, 0), 0);
    ASSERT_EQ(tsStrList_getMember(&b, nullptr, destination, 0), 0);
    EXPECT_NE(a, b);
    ASSERT_EQ(tsStrList_setMember(source, 0, "Z", nullptr), 0);
    ASSERT_EQ(tsStrList_deleteMember(source, 2, 1), 0);
    EXPECT_EQ(textsOf(destination), (std::vector<std::string>{"A", kNone, "C"}));
    EXPECT_EQ(infoOf(destination, 0), (std::vector<int32_t>{0, 5}));

    // A list copied onto itself stays whole.
    ASSERT_EQ(tsStrList_copy(destination, destination), 0);
    EXPECT_EQ(textsOf(destination), (std::vector<std::string>{"A", kNone, "C"}));
}

TEST(StrList, MoveMembers)
{
    // Each row: destination, source, how many, result, texts after, from
    // {a, b, <null>, d, e}. Targets are read from the list as it was before
    // the move, so overlapping ranges shift as a block; a member without text
    // leaves its target's text.
    struct Row {
        int32_t destination, source, count, result;
        std::vector<std::string> after;
    } const rows[] = {
        {3, 0, 2, 0, {"a", "b", kNone, "a", "b"}},
        {1, 0, 3, 0, {"a", "a", "b", "d", "e"}},  // shift up: 1 <- a, 2 <- b, 3 keeps "d" (source null)
        {0, 3, 2, 0, {"d", "e", kNone, "d", "e"}},
        {0, 1, 4, 0, {"b", "b", "d", "e", "e"}},  // shift down; the null source leaves "b" at 1
        {2, 2, 1, 0, {"a", "b", kNone, "d", "e"}},
        {0, 0, 0, kFail, {"a", "b", kNone, "d", "e"}},
        {4, 0, 2, kFail, {"a", "b", kNone, "d", "e"}},
        {0, 4, 2, kFail, {"a", "b", kNone, "d", "e"}},
        {-1, 0, 1, kFail, {"a", "b", kNone, "d", "e"}},
    };
    for (const Row &row : rows) {
        List list(0, 1);
        fill(list, {"a", "b", kNone, "d", "e"});
        for (int32_t i = 0; i < 5; ++i)
            ASSERT_EQ(tsStrList_setInfoField(list, i, 0, i + 1), 0);
        EXPECT_EQ(tsStrList_moveMembers(list, row.destination, row.source, row.count), row.result)
            << row.destination << " <- " << row.source << " x" << row.count;
        EXPECT_EQ(textsOf(list), row.after) << row.destination << " <- " << row.source << " x" << row.count;
        if (row.result == 0) {
            // The info fields follow the source members, the null one included.
            for (int32_t i = 0; i < row.count; ++i)
                EXPECT_EQ(infoOf(list, row.destination + i)[0], row.source + i + 1);
        }
    }
}

TEST(StrList, FieldBookOfPointNames)
{
    // Point names of a traverse with two info fields: a code and a survey day.
    List book(0, 2);
    const char *names[] = {"ST1", "ST2", "ST3", "BM7"};
    for (int32_t i = 0; i < 4; ++i) {
        int32_t at = -1;
        ASSERT_EQ(tsStrList_insertMember(&at, book, -1, 1), 0);
        const int32_t info[2] = {i < 3 ? 10 : 20, 1};
        ASSERT_EQ(tsStrList_setMember(book, at, names[i], info), 0);
    }
    // A station missed on day 1 goes in after ST2 on day 2.
    int32_t at = -1;
    ASSERT_EQ(tsStrList_insertMember(&at, book, tsStrList_getMemberIndex(book, "ST2") + 1, 1), 0);
    const int32_t day2[2] = {10, 2};
    ASSERT_EQ(tsStrList_setMember(book, at, "ST2A", day2), 0);
    EXPECT_EQ(textsOf(book), (std::vector<std::string>{"ST1", "ST2", "ST2A", "ST3", "BM7"}));
    EXPECT_EQ(infoOf(book, 2), (std::vector<int32_t>{10, 2}));
    EXPECT_EQ(infoOf(book, 4), (std::vector<int32_t>{20, 1}));
    // ST3 was a blunder: deleted, the benchmark moves up one place.
    ASSERT_EQ(tsStrList_deleteMember(book, tsStrList_getMemberIndex(book, "ST3"), 1), 0);
    EXPECT_EQ(tsStrList_getMemberIndex(book, "BM7"), 3);
    EXPECT_EQ(tsStrList_getMemberIndex(book, "ST3"), -1);
    // The book survives a copy into a fresh list.
    List copy(0, 2);
    ASSERT_EQ(tsStrList_copy(copy, book), 0);
    EXPECT_EQ(textsOf(copy), textsOf(book));
}

}  // namespace
