#include "octetvalidator.h"

#include <QRegularExpression>

const char OctetValidator::Pattern[] = "^(0|[1-9]|[1-9][0-9]|1[0-9][0-9]|2([0-4][0-9]|5[0-5]))$";

OctetValidator::OctetValidator(QObject *parent)
    : QRegularExpressionValidator(QRegularExpression(QString::fromLatin1(Pattern)), parent)
{
}
