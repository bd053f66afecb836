#include "StandardOutput.h"

#include <gtest/gtest.h>

TEST(StandardOutputTest, IsOneStreamOnStdoutForReadingAndWriting)
{
    QTextStream &stream = standardOutput();
    EXPECT_EQ(&stream, &standardOutput());
    ASSERT_NE(stream.device(), nullptr);
    EXPECT_EQ(stream.device()->openMode() & QIODevice::ReadWrite, QIODevice::ReadWrite);
}
