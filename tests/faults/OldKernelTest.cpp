// The command on a kernel that does not know listxattrat(2): a filter answers for it that there is no such
// call.

#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>

#include "command/Running.h"
#include "support/TemporaryFolder.h"

namespace {

constexpr unsigned kListxattrat = 465;

bool RefuseListxattrat() {
    sock_filter rules[] = {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
                           BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, kListxattrat, 0, 1),
                           BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
                           BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)};
    sock_fprog const program{std::size(rules), rules};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0 &&
           syscall(kListxattrat, -1, "", 0, nullptr, 0) == -1 && errno == ENOSYS;
}

}  // namespace

TEST(OldKernel, AttributesAreReadByPath) {
    TemporaryFolder const here;
    here.Write("plain");
    here.Write("mac", "12345");
    here.SetAttribute("mac", "user.com.apple.FinderInfo", "TEXTttxt" + std::string(24, '\0'));
    here.SetAttribute("mac", "user.com.apple.ResourceFork", "fork");
    pid_t const child = fork();
    if (child == 0) {
        EXPECT_TRUE(RefuseListxattrat());
        Ran const ran =
            RunZelq({"(name of it, length of resource fork of it, type of it = file type \"TEXT\") of files "
                     "whose (size of it > 0) of folder \"" +
                     here.Path() + "\""});
        EXPECT_EQ("mac, 4, true\n", ran.out);
        EXPECT_EQ("", ran.err);
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_EQ(0, status) << "see the failures above";
}
