// Any two texts as time stamps: the order is one, and the menu shows them.
#include "attributes/common_rollback_ops.h"
#include "fuzz/fuzz.h"
#include "labels/time_stamp.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using Quill::Utils::time_stamp;
    const std::vector<std::string> stamps = Fuzz::Lines(Fuzz::Text(data, size), 3);
    const auto less = [&](std::size_t a, std::size_t b) {
        return time_stamp::is_less(stamps[a].c_str(), stamps[b].c_str());
    };
    for (std::size_t a = 0; a < 3; ++a) {
        Fuzz::Require(!less(a, a));
        for (std::size_t b = 0; b < 3; ++b) {
            Fuzz::Require(!(less(a, b) && less(b, a)));
            Fuzz::Require(time_stamp::comparator_func(stamps[a], stamps[b]) == less(a, b));
            for (std::size_t c = 0; c < 3; ++c)
                Fuzz::Require(!(less(a, b) && less(b, c)) || less(a, c));
        }
    }
    static_cast<void>(time_stamp::is_raw(stamps[0]));
    const std::string menu = Quill::Utils::CommonRollbackOps::FormatRollbackMenu(stamps[0], stamps[1]);
    Fuzz::Require(menu.starts_with(Quill::Utils::CommonRollbackOps::FormatSvptDate(stamps[0])));
    return 0;
}
