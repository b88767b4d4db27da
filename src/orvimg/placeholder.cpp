#include <AppComponents/imgproc/orvimg.h>
