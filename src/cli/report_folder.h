// A folder of files that this program made, and that it can replace as a whole.
#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <string_view>

namespace Quill::Cli {

// Collects the files of a new report beside `target`, until they take its place together. Whoever looks at `target`
// finds what was there before, or all of the new files. What was collected for nothing is removed.
//
// The place is free, or an empty folder, or one with an earlier report and nothing else: the file ".quill-report" names
// what the report consists of, and a folder that holds anything beyond it is refused, so that nothing that a user put
// there can be lost.
class ReportFolder {
public:
    // Throws a CommandError that names `target` when the place is none of the above or cannot be written beside.
    explicit ReportFolder(const std::string& target);
    ReportFolder(const ReportFolder&) = delete;
    ReportFolder& operator=(const ReportFolder&) = delete;
    ~ReportFolder();

    // One more file, by its name without a folder. Throws a CommandError when it cannot be written.
    void Add(const std::string& name, std::string_view content);

    // Throws a CommandError, with `target` as it was, when the files cannot take its place.
    void TakePlace();

private:
    void CheckPlace() const;

    const std::string m_name;  // as the user gave it
    const std::filesystem::path m_target;
    std::filesystem::path m_new;
    std::set<std::string> m_files;
};

}  // namespace Quill::Cli
