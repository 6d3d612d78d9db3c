// Digests, as the standard's examples have them.
#include <gtest/gtest.h>

#include "tool/documents/Sha256.h"

using TrellanTool::Sha256;

TEST(Sha256, GivesTheDigestOfAllThatWasAdded)
{
    Sha256 sha256;
    EXPECT_EQ(sha256.digest(), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    sha256.add("a");
    sha256.add("bc");
    EXPECT_EQ(sha256.digest(), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}
