// The records are laid out as hosts of version 1 have them, which are not compiled again: on x86-64 Linux, with the
// strings of libstdc++ that take 32 bytes.
#include <gtest/gtest.h>

#include <cstddef>

#include "ZoITrellanUpdater.h"

using namespace ZoNTrellanUpdater;

TEST(RecordLayout, OfTheOptionsStaysAsItIs)
{
    EXPECT_EQ(sizeof(ZoTOptions), 208u);
    EXPECT_EQ(alignof(ZoTOptions), 8u);
    EXPECT_EQ(offsetof(ZoTOptions, archivePath), 0u);
    EXPECT_EQ(offsetof(ZoTOptions, descriptionFileName), 32u);
    EXPECT_EQ(offsetof(ZoTOptions, option3), 64u);
    EXPECT_EQ(offsetof(ZoTOptions, boardTypes), 96u);
    EXPECT_EQ(offsetof(ZoTOptions, serialNumbers), 128u);
    EXPECT_EQ(offsetof(ZoTOptions, elementNames), 160u);
    EXPECT_EQ(offsetof(ZoTOptions, force), 192u);
    EXPECT_EQ(offsetof(ZoTOptions, noProgress), 193u);
    EXPECT_EQ(offsetof(ZoTOptions, verbose), 194u);
    EXPECT_EQ(offsetof(ZoTOptions, configuration), 195u);
    EXPECT_EQ(offsetof(ZoTOptions, disableCustomElements), 196u);
    EXPECT_EQ(offsetof(ZoTOptions, option12), 197u);
    EXPECT_EQ(offsetof(ZoTOptions, command), 200u);
}

TEST(RecordLayout, OfAnElementStaysAsItIs)
{
    EXPECT_EQ(sizeof(ZoTUpdateElement), 280u);
    EXPECT_EQ(alignof(ZoTUpdateElement), 8u);
    EXPECT_EQ(offsetof(ZoTUpdateElement, index), 0u);
    EXPECT_EQ(offsetof(ZoTUpdateElement, boardType), 8u);
    EXPECT_EQ(offsetof(ZoTUpdateElement, serialNumber), 40u);
    EXPECT_EQ(offsetof(ZoTUpdateElement, boardName), 48u);
    EXPECT_EQ(offsetof(ZoTUpdateElement, unitDescription), 80u);
    EXPECT_EQ(offsetof(ZoTUpdateElement, slot), 112u);
    EXPECT_EQ(offsetof(ZoTUpdateElement, slotCount), 116u);
    EXPECT_EQ(offsetof(ZoTUpdateElement, displayName), 120u);
    EXPECT_EQ(offsetof(ZoTUpdateElement, displayType), 152u);
    EXPECT_EQ(offsetof(ZoTUpdateElement, isFileSystemElement), 184u);
    EXPECT_EQ(offsetof(ZoTUpdateElement, valid), 185u);
    EXPECT_EQ(offsetof(ZoTUpdateElement, active), 186u);
    EXPECT_EQ(offsetof(ZoTUpdateElement, installedVersion), 192u);
    EXPECT_EQ(offsetof(ZoTUpdateElement, custom), 224u);
    EXPECT_EQ(offsetof(ZoTUpdateElement, phase), 228u);
    EXPECT_EQ(offsetof(ZoTUpdateElement, hasUpdateFile), 232u);
    EXPECT_EQ(offsetof(ZoTUpdateElement, updateFileIndex), 236u);
    EXPECT_EQ(offsetof(ZoTUpdateElement, availableVersion), 240u);
    EXPECT_EQ(offsetof(ZoTUpdateElement, checksumDiffers), 272u);
    EXPECT_EQ(offsetof(ZoTUpdateElement, disabled), 273u);
}

TEST(RecordLayout, OfAFileStaysAsItIs)
{
    EXPECT_EQ(sizeof(ZoTUpdateFile), 64u);
    EXPECT_EQ(alignof(ZoTUpdateFile), 8u);
    EXPECT_EQ(offsetof(ZoTUpdateFile, name), 0u);
    EXPECT_EQ(offsetof(ZoTUpdateFile, version), 32u);
}
