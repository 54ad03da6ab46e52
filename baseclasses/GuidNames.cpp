#include "baseclasses/GuidNames.h"

#include "baseclasses/FourCCMap.h"

namespace {

struct GuidName {
    const char* name;
    GUID guid;
};

constexpr GuidName kGuidNames[] = {
#define OUR_GUID_ENTRY(name, l, w1, w2, b1, b2, b3, b4, b5, b6, b7, b8)                                      \
    {#name, {l, w1, w2, {b1, b2, b3, b4, b5, b6, b7, b8}}},
#include <uuids.h>
    {"MEDIASUBTYPE_I420", FOURCCMap(MAKEFOURCC('I', '4', '2', '0'))},
};

} // namespace

const char* CGuidNameList::operator[](const GUID& guid) const {
    if (guid == GUID_NULL)
        return "GUID_NULL";
    for (const GuidName& entry : kGuidNames)
        if (entry.guid == guid)
            return entry.name;
    return "Unknown GUID Name";
}
