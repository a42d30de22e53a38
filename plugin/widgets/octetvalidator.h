#ifndef OCTETVALIDATOR_H
#define OCTETVALIDATOR_H

#include <QRegularExpressionValidator>

// One octet of a dotted IPv4 address as typed into a field: a decimal number
// from 0 to 255 without leading zeros, so that "01" or "256" cannot stand
// in a field that is later joined into an address.
class OctetValidator : public QRegularExpressionValidator
{
    Q_OBJECT

public:
    static const char Pattern[];

    explicit OctetValidator(QObject *parent = nullptr);
};

#endif // OCTETVALIDATOR_H
