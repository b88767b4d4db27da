#include <AppComponents/AppComponents.h>

AppComponents::AppComponents() = default;
