// What the tool says in its own name.
#include <gtest/gtest.h>

#include <sstream>

#include "tool/Streams.h"

namespace {

std::string said(std::string_view text)
{
    std::ostringstream err;
    TrellanTool::say(err, text);
    return err.str();
}

}  // namespace

TEST(Streams, EachLineThatTheToolSaysBeginsWithItsName)
{
    EXPECT_EQ(said("one"), "trellan-update: one\n");
    EXPECT_EQ(said("one\ntwo"), "trellan-update: one\ntrellan-update: two\n");
    EXPECT_EQ(said("one\n\ntwo\n"), "trellan-update: one\ntrellan-update: \ntrellan-update: two\n");
    EXPECT_EQ(said(""), "trellan-update: \n");
}
