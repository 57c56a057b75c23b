extern "C" int unitNeeded();

/// Room for a test to put an archive into the middle of the library, as linking one in does.
extern "C" __attribute__((section(".us_resources")))
const char unitInstalledRoom[4096] = {'u', 's', '!', '\x01', '\x02'};
extern "C" __attribute__((section(".ostrel_bundle")))
const char unitArchiveRoom[4096] = {'r', 'o', 'o', 'm', '!', '\x01', '\x02'};
/// The same where no tool puts one.
extern "C" const char unitOtherRoom[4096] = {'o', 't', 'h', 'e', 'r', '!', '\x01', '\x02'};

extern "C" int unitPlain()
{
    return unitNeeded() + unitArchiveRoom[0] + unitInstalledRoom[0] + unitOtherRoom[0];
}
