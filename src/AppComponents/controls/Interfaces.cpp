// Each interface has its virtual table here, once for the library and all its users.
#include <AppComponents/controls/IModelViewMapper.h>
#include <AppComponents/controls/IModelViewSubrangeMapper.h>
#include <AppComponents/controls/ISetTexter.h>
#include <AppComponents/controls/ISetValuer.h>

IModelViewMapper::~IModelViewMapper() = default;

IModelViewSubrangeMapper::~IModelViewSubrangeMapper() = default;

bool IModelViewSubrangeMapper::isLimitedToSubrange()
{
    return false;
}

ISetTexter::~ISetTexter() = default;

bool ISetTexter::blockSignals(bool)
{
    return false;
}

ISetValuer::~ISetValuer() = default;
