// Disks that fail, and machines that stop.
#include <random>

#include "tests/designstore/stored_design.h"
#include "tests/designstore/test_vfs.h"

namespace {

using namespace Orin;
using namespace Orin::DesignDb;
using Tests::Design;
using Tests::FileText;
using Tests::Io;
using Tests::IoCall;

// A design of one block with a sheet; every commit adds a component to both and sets an attribute.
class FaultyDisk : public testing::Test {
protected:
    FaultyDisk() {
        Design design;
        EXPECT_TRUE(design.editor.AddBlock({"a"}, block) && design.editor.AddGroup(block, {"1"}, sheet));
        EXPECT_TRUE(design.Create(path));
        start = FileText(path);
    }
    void Restart() {
        for (const char* suffix : {"", "-wal", "-shm", "-new"})
            std::filesystem::remove(path + suffix);
        std::ofstream(path, std::ios::binary) << start;
    }
    Result Commit(Design& design, std::size_t size = 10) const {
        Index comp;
        EXPECT_TRUE(design.snapshot->BeginTransaction(ETransactionType::Edit));
        EXPECT_TRUE(design.editor.AddComp(block, {"U1"}, comp) && design.editor.AddMember(sheet, comp));
        EXPECT_TRUE(design.editor.SetAttribute(block, "Text", std::string(size, 'x').c_str()));
        return design.snapshot->CommitTransaction();
    }

    const Tests::Folder folder;
    const std::string path = folder / "design.qdb";
    Index block, sheet;
    std::string start;
};

TEST_F(FaultyDisk, FailsCommitsAsAWholeAndMemoryFollows) {
    int refused = 0, unsure = 0;
    const std::vector<std::size_t> small{10, 20, 30, 1, 40};
    const std::vector<std::size_t> large{10, 4500000, 30};  // brought from the log into the file at once
    for (unsigned disk = 0; disk < 4; ++disk) {
        const bool forGood = disk % 2 == 1;
        const std::vector<std::size_t>& sizes = disk < 2 ? small : large;
        bool reached = true;
        // Thousands of calls write the pages of a large commit; some of them will do.
        for (int failing = 0; reached; failing += &sizes == &small ? 1 : 1 + failing / 2) {
            SCOPED_TRACE((forGood ? "from call " : "at call ") + std::to_string(failing));
            Restart();
            int calls = -1;  // not armed
            const Tests::TestVfs vfs([&](const IoCall& call) {
                if (calls < 0) return SQLITE_OK;
                const int number = calls++;
                if (number != failing && !(forGood && number > failing)) return SQLITE_OK;
                if (call.what == Io::Write) return number % 2 == 0 ? SQLITE_FULL : SQLITE_IOERR_WRITE;
                return call.what == Io::Sync ? SQLITE_IOERR_FSYNC : SQLITE_IOERR;
            });
            std::string memory, refusedState;
            {
                Design design(path);
                ASSERT_TRUE(design.opened);
                calls = 0;
                memory = design.Json();
                for (const std::size_t size : sizes) {
                    const Result result = Commit(design, size);
                    const std::string after = design.Json();
                    if (result) {
                        EXPECT_NE(after, memory);
                    } else {
                        ++refused;
                        EXPECT_EQ(result.GetErrorCode(), static_cast<int>(EErrorCode::StoreFailed));
                        EXPECT_EQ(after, memory);
                        if (std::string(result.GetDescription()).find("opened again") != std::string::npos &&
                            refusedState.empty()) {
                            Design other;
                            other.Read(memory);
                            EXPECT_TRUE(Commit(other, size));
                            refusedState = other.Json();
                        }
                    }
                    memory = after;
                }
                reached = calls > failing;
            }
            calls = -1;
            const std::string reopened = Design(path).Json();
            if (reopened != memory && reopened == refusedState)
                ++unsure;
            else
                ASSERT_EQ(reopened, memory);
        }
    }
    EXPECT_GT(refused, 100);
    EXPECT_LT(unsure, 10);  // only where the last sync failed and nothing could be written after it
}

TEST_F(FaultyDisk, FailsOpeningAndMakingWithNothingLeft) {
    const std::string memory = Design(path).Json();
    const std::string made = folder / "made.qdb";
    for (const bool creating : {false, true}) {
        bool reached = true;
        for (int failing = 0; reached; ++failing) {
            SCOPED_TRACE(failing);
            Restart();
            std::filesystem::remove(made);
            int calls = 0;
            const Tests::TestVfs vfs([&](const IoCall&) { return calls++ == failing ? SQLITE_IOERR : SQLITE_OK; });
            if (creating) {
                Design design;
                design.Read(memory);
                const Result result = design.Create(made);
                EXPECT_EQ(std::filesystem::exists(made), static_cast<bool>(result));
                EXPECT_EQ(design.Json(), memory);
                EXPECT_FALSE(std::filesystem::exists(made + "-new"));
            } else {
                Design design(path);
                EXPECT_TRUE(!design.opened || design.Json() == memory);
            }
            EXPECT_EQ(FileText(path), start);
            reached = calls > failing;
        }
    }
}

// What a disk holds after the machine stopped: all that was synced, and of the rest whatever it got round to.
class Disk {
public:
    struct Change {
        Io what;
        std::string path;
        std::size_t at = 0;
        std::string bytes = {};
    };
    using Files = std::map<std::string, std::string>;
    explicit Disk(Files files) : m_synced(std::move(files)) {}

    void Do(const Change& change) {
        std::vector<const Change*>& pending = m_pending[change.path];
        if (change.what == Io::Sync) {
            for (const Change* const earlier : pending)
                Apply(m_synced[change.path], *earlier, earlier->bytes.size());
            pending.clear();
        } else if (change.what == Io::Delete) {
            m_pending.erase(change.path);
            m_synced.erase(change.path);
        } else {
            pending.push_back(&change);
        }
    }
    enum Damage { Lost, Kept, Some, Torn, Damages };
    Files After(unsigned damage, std::mt19937& random) const {
        Files files = m_synced;
        for (const auto& [path, changes] : m_pending)
            for (const Change* const change : changes) {
                if (damage == Lost || (damage >= Some && random() % 2 == 0)) continue;
                Apply(files[path], *change,
                      damage == Torn ? random() % (change->bytes.size() + 1) : change->bytes.size());
            }
        return files;
    }

private:
    static void Apply(std::string& file, const Change& change, std::size_t size) {
        if (change.what == Io::Truncate) return file.resize(change.at);
        if (file.size() < change.at + size) file.resize(change.at + size);
        file.replace(change.at, size, change.bytes, 0, size);
    }

    Files m_synced;
    std::map<std::string, std::vector<const Change*>> m_pending;
};

TEST_F(FaultyDisk, LosesNoAcknowledgedCommitWhenTheMachineStops) {
    std::vector<std::string> states;
    std::vector<Disk::Change> changes;
    std::vector<std::size_t> acknowledged;  // by change: the last state of which the writer had been told
    {
        const Tests::TestVfs vfs([&](const IoCall& call) {
            if (call.what == Io::Read || call.what == Io::Open) return SQLITE_OK;
            changes.push_back({call.what, call.path, static_cast<std::size_t>(call.offset)});
            if (call.what == Io::Write)
                changes.back().bytes.assign(static_cast<const char*>(call.data), static_cast<std::size_t>(call.size));
            acknowledged.push_back(states.empty() ? 0 : states.size() - 1);
            return SQLITE_OK;
        });
        Design design(path);
        states.push_back(design.Json());
        for (int i = 0; i < 60; ++i) {
            EXPECT_TRUE(Commit(design, i == 57 ? 4500000 : 300));
            states.push_back(design.Json());
        }
    }
    states.push_back("nothing more");
    const Tests::Folder after;
    Disk disk(Disk::Files{{path, start}});
    std::mt19937 random(1);
    std::size_t newer = 0, moments = 0;
    for (std::size_t i = 0; i < changes.size(); ++i) {
        // Pages are written by the thousand; the other calls are looked at one by one.
        if (changes[i].what == Io::Sync || i % 29 == 0) {
            SCOPED_TRACE(i);
            for (const char* suffix : {"", "-wal", "-shm"})
                std::filesystem::remove(after / "design.qdb" + suffix);
            for (const auto& [name, text] : disk.After(++moments % Disk::Damages, random))
                std::ofstream(after / name.substr(name.rfind('/') + 1).c_str(), std::ios::binary) << text;
            const std::string found = Design(after / "design.qdb").Json();
            const bool isNewer = found == states[acknowledged[i] + 1];
            newer += isNewer ? 1U : 0U;
            ASSERT_TRUE(isNewer || found == states[acknowledged[i]]) << found.substr(0, 300);
        }
        disk.Do(changes[i]);
    }
    EXPECT_GT(moments, 100U);
    EXPECT_GT(newer, 0U);  // some stopped between a sync and its acknowledgement
}

}  // namespace
