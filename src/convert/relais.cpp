#include "convert.h"

#include <QPainter>
#include <QPrinter>

void convert::readRelais(const QJsonArray& relais) {
    Q_UNUSED(relais)
}

void convert::printRelais(QPainter& painter, QPrinter& printer) {
    Q_UNUSED(painter)
    Q_UNUSED(printer)
}
