// The inspector's JSON writer, read back by the independent reader of the tests.
#include "tools/summary/JsonWriter.h"
#include "tests/support/Json.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

namespace {

using TavInspect::JsonWriter;
using TavTest::FlatJson;

TEST(JsonWriter, AwkwardStringsAndNestingSurviveARoundTrip) {
    const std::vector<std::string> texts{
        "",
        "plain",
        "quote \" and backslash \\",
        "LD0/LLN0$GO$gcb\tA\nB\r",
        std::string("nul \0 and bell \x07", 16),
        "Сетевой Анализатор",
    };
    std::ostringstream out;
    JsonWriter json(out);
    json.beginObject();
    json.key("texts");
    json.beginArray();
    for (const auto& t : texts)
        json.string(t);
    json.endArray();
    json.key("empty");
    json.beginArray();
    json.endArray();
    json.key("nested");
    json.beginObject();
    json.key("n");
    json.number(std::int64_t{-42});
    json.key("time");
    json.rawNumber("1700000000.000000001");
    json.key("nan");
    json.number(std::nan(""));
    json.key("flag");
    json.boolean(true);
    json.key("none");
    json.null();
    json.endObject();
    json.endObject();

    const FlatJson j = TavTest::parseJson(out.str());
    ASSERT_EQ(j.at("texts"), std::to_string(texts.size()));
    for (std::size_t i = 0; i < texts.size(); ++i)
        EXPECT_EQ(j.at("texts." + std::to_string(i)), '"' + texts[i] + '"') << i;
    EXPECT_EQ(j.at("empty"), "0");
    EXPECT_EQ(j.at("nested.n"), "-42");
    EXPECT_EQ(j.at("nested.time"), "1700000000.000000001");
    EXPECT_EQ(j.at("nested.nan"), "null") << "JSON has no NaN";
    EXPECT_EQ(j.at("nested.flag"), "true");
    EXPECT_EQ(j.at("nested.none"), "null");
    EXPECT_EQ(j.at(""), "3");
}

} // namespace
