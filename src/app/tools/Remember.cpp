// tavrel-remember A B: the paths that the window starts with the next time.  For the demonstration, in a
// settings folder of its own.
#include <cstdio>

#include "app/logic/FormSettings.h"
#include "platform/Settings.h"
#include "text/Error.h"

int main(int argc, char** argv) {
    using namespace tavrel;
    if (argc != 3) {
        std::fprintf(stderr, "tavrel-remember A B\n");
        return 2;
    }
    try {
        app::FormSettings settings(platform::UserSettings());
        settings.Write(app::Remembered::PathA, argv[1]);
        settings.Write(app::Remembered::PathB, argv[2]);
        settings.Sync();
    } catch (const Error& error) {
        std::fprintf(stderr, "%s\n", error.Description().c_str());
        return 1;
    }
    return 0;
}
