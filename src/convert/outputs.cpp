#include "convert.h"

#include <QPainter>
#include <QPrinter>

void convert::readOutputs(const QJsonArray& outputs) {
    Q_UNUSED(outputs)
}

void convert::printOutput(QPainter& painter, QPrinter& printer) {
    Q_UNUSED(painter)
    Q_UNUSED(printer)
}
