// The right to write a design file, which one process has at a time.
#pragma once

#include <string>

namespace Orin::DesignDb {

// Holds the lock file beside a design file. The system gives the lock up when the process dies.
class WriterLock {
public:
    // What its name has more than that of the design file.
    static constexpr const char* Suffix = "-lock";

    // Throws a StoreFault, which names the holder, when another process or another part of this one has it.
    explicit WriterLock(const std::string& designFile);
    ~WriterLock();
    WriterLock(const WriterLock&) = delete;
    WriterLock& operator=(const WriterLock&) = delete;

private:
    const std::string m_path;
    int m_file = -1;
};

}  // namespace Orin::DesignDb
