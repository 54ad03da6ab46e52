// The module's class table: one filter.
#include "scenes/module/ClassTable.h"

#include "baseclasses/ClassFactory.h"
#include "filter/SceneDetectFilter.h"

namespace {

const AMOVIESETUP_FILTER kFilterSetup = {&CLSID_SceneDetectFilter, kFilterName, MERIT_DO_NOT_USE, 0, nullptr};

} // namespace

CFactoryTemplate g_Templates[] = {
    {kFilterName, &CLSID_SceneDetectFilter, scenedetect::SceneDetectFilter::CreateInstance, nullptr,
     &kFilterSetup},
};
int g_cTemplates = 1;
