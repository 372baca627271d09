#include "convert/convert.h"

#include "convert/jsonrecord.h"

void convert::readOffset(const QJsonArray& offsets) {
    // The device's offsets are not part of the report.
    Q_UNUSED(offsets)
    offsetValues.clear();
}

void convert::readModbus(const QJsonObject& modbus) {
    modbusValues.clear();
    appendMembers(modbusValues, modbus,
                  {"offset", "transmissionRate", "address", "mode", "parity"});
}

void convert::readService(const QJsonObject& service) {
    serviceValues.clear();
    appendMembers(serviceValues, service,
                  {"lastService", "nextService", "lastCalibration", "nextCalibration"});
}
