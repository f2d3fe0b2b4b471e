// Processes that die while they write.
#include <random>

#include <signal.h>
#include <sys/wait.h>

#include "tests/designstore/stored_design.h"

namespace {

using namespace Orin;
using namespace Orin::DesignDb;
using Tests::Design;

constexpr unsigned Objects = 20;

// Counts on, and acknowledges each number once it is committed: all objects bear it then.
[[noreturn]] void CountForEver(const std::string& path, const std::vector<Index>& objects, unsigned from, int told) {
    Design design(path);
    for (unsigned number = from + 1; design.opened; ++number) {
        const std::string text = std::to_string(number);
        if (!design.snapshot->BeginTransaction(ETransactionType::Edit)) break;
        for (const Index& object : objects)
            static_cast<void>(design.editor.SetAttribute(object, "number", text.c_str()));
        if (!design.snapshot->CommitTransaction() || write(told, &number, sizeof number) != sizeof number) break;
    }
    _exit(1);
}

TEST(KilledWriter, LosesNothingThatItAcknowledged) {
    const Tests::Folder folder;
    const std::string path = folder / "design.qdb";
    std::vector<Index> objects;
    {
        Design design;
        Index block, comp;
        ASSERT_TRUE(design.editor.AddBlock({"a"}, block));
        for (unsigned i = 0; i < Objects; ++i) {
            ASSERT_TRUE(design.editor.AddComp(block, {"U"}, comp) && design.editor.SetAttribute(comp, "number", "0"));
            objects.push_back(comp);
        }
        ASSERT_TRUE(design.Create(path));
    }
    std::mt19937 random(1);
    unsigned number = 0;
    for (int round = 0; round < 1000; ++round) {
        SCOPED_TRACE(round);
        int told[2];
        ASSERT_EQ(pipe(told), 0);
        const pid_t child = fork();
        if (child == 0) CountForEver(path, objects, number, told[1]);
        close(told[1]);
        usleep(static_cast<useconds_t>(random() % 12000));
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status));
        unsigned acknowledged = number;
        while (read(told[0], &acknowledged, sizeof acknowledged) == sizeof acknowledged) {
        }
        close(told[0]);

        const Design design(path, round % 2 == 0 ? EFileAccess::Read : EFileAccess::Write);
        ASSERT_TRUE(design.opened) << design.Refusal();
        IUIDManager manager;
        ASSERT_TRUE(design.snapshot->GetUIDManager(manager));
        std::string first;
        for (const Index& object : objects) {
            ContainerT<const IComp> comp;
            String value;
            ASSERT_TRUE(manager.GetComp(comp, object) && comp->GetAttribute("number", value, EAttributeType::User));
            if (first.empty()) first = value;
            ASSERT_TRUE(value == first.c_str()) << "torn";
        }
        number = static_cast<unsigned>(std::stoul(first));
        ASSERT_TRUE(number == acknowledged || number == acknowledged + 1) << number << " after " << acknowledged;
    }
    EXPECT_GT(number, 1000U);
}

}  // namespace
