// A time zone for the length of a test.
#pragma once

#include <cstdlib>
#include <ctime>

namespace Tests {

// Two hours ahead of UTC all year round.
class TwoHoursAhead {
public:
    TwoHoursAhead() { Set("XYZ-2"); }
    ~TwoHoursAhead() { Set("UTC0"); }
    TwoHoursAhead(const TwoHoursAhead&) = delete;
    TwoHoursAhead& operator=(const TwoHoursAhead&) = delete;

private:
    static void Set(const char* zone) {
#ifdef _WIN32
        _putenv_s("TZ", zone);
        _tzset();
#else
        setenv("TZ", zone, 1);
        tzset();
#endif
    }
};

}  // namespace Tests
