// The result code of each value of errno.

#include "files/Errors.h"

#include <Carbon/MacErrors.h>
#include <gtest/gtest.h>

#include <cerrno>

TEST(ErrorCodes, StandForErrno) {
    struct {
        int number;
        int code;
    } const rows[] = {{0, 0},          {ENOENT, -43}, {ELOOP, -43},          {ENOTDIR, -120}, {EACCES, -5000},
                      {EPERM, -54},    {EROFS, -44},  {EBUSY, -47},          {ETXTBSY, -47},  {EEXIST, -48},
                      {EISDIR, -1302}, {ENOSPC, -34}, {EDQUOT, -34},         {EMFILE, -42},   {ENFILE, -42},
                      {EINVAL, -50},   {EBADF, -51},  {ENAMETOOLONG, -1410}, {EIO, -36},      {ENOMEM, -108},
                      {ESTALE, -35},   {ENODEV, -35}, {ECANCELED, -128},     {EPIPE, -36},    {12345, -36}};
    for (auto const& row : rows) EXPECT_EQ(row.code, Platform::ErrorOfErrno(row.number)) << row.number;
}
