#include "app/windowlog.h"

Q_LOGGING_CATEGORY(brevioWindow, "brevio.window")
Q_LOGGING_CATEGORY(brevioJob, "brevio.job", QtInfoMsg)
