extern "C" int unitNeeded();

/// Room for a test to put an archive into the middle of the library, as linking one in does.
extern "C" const char unitArchiveRoom[4096] = {'r', 'o', 'o', 'm', '!', '\x01', '\x02'};

extern "C" int unitPlain()
{
    return unitNeeded() + unitArchiveRoom[0];
}
