// The pages' inputs on their way into commands, built but never run: the
// four fields of an address editor as typed, register values, interface
// addresses, date and time fields, brightness steps and process names.
// Every command built is either invalid (and would not be run) or matches
// one of the audited patterns with each argument in its kind's grammar.
#include "argumentgrammar.h"
#include "commandscanner.h"
#include "commandtext.h"
#include "datetimedialog.h"
#include "devicecommands.h"
#include "fuzzsupport.h"
#include "generalsettings.h"
#include "networkaddress.h"
#include "octetvalidator.h"
#include "processlookup.h"
#include "routerules.h"
#include "wlanaddressing.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <climits>
#include <string>
#include <vector>

namespace {

using Construction = CommandScanner::Construction;

const QVector<Construction> &audited()
{
    static const QVector<Construction> found = CommandScanner::scanTree(QStringLiteral(PLUGIN_SOURCE_DIR));
    FUZZ_CHECK(found.size() >= 40, QByteArray(PLUGIN_SOURCE_DIR));
    return found;
}

bool matchesAudit(const QByteArray &text)
{
    for (const Construction &c : audited()) {
        // The fixed start of the pattern first: it rules out nearly all.
        const int fixed = c.pattern.indexOf('%');
        if (!text.startsWith(fixed < 0 ? c.pattern : c.pattern.left(fixed)))
            continue;
        if (c.problem.isEmpty() && text.size() < c.capacity && ArgumentGrammar::conforms(c.pattern, c.kinds(), text))
            return true;
    }
    return false;
}

// What may come of any command: nothing, or an audited shape.
void checkText(const QByteArray &text)
{
    FUZZ_CHECK(text.isEmpty() || matchesAudit(text), text);
}

void check(const CommandText &command)
{
    FUZZ_CHECK(command.isValid() != command.text().isEmpty(), command.text());
    checkText(command.text());
}

template<class List>
void checkAll(const List &commands)
{
    for (const CommandText &command : commands)
        check(command);
}

// One field of an address editor after a person typed `keys` into it: the
// validator turns away every key that would make the text invalid, as the
// line edit does.
QString typedOctet(const OctetValidator &validator, const std::string &keys)
{
    QString field;
    for (const char key : keys) {
        QString candidate = field + QLatin1Char(key);
        int position = candidate.size();
        if (validator.validate(candidate, position) != QValidator::Invalid)
            field = candidate;
    }
    return field;
}

// Four octet texts, typed through the validator or, for values that come
// from files and registers, as raw as they come. `complete` tells whether
// every field holds a whole octet.
QStringList octets(FuzzedDataProvider &in, bool *complete)
{
    static const OctetValidator validator;
    const bool typed = in.ConsumeBool();
    QStringList fields;
    *complete = typed;
    for (int i = 0; i < 4; ++i) {
        const std::string keys = in.ConsumeRandomLengthString(8);
        QString field = typed ? typedOctet(validator, keys) : QString::fromLatin1(keys.c_str());
        int position = field.size();
        *complete = *complete && validator.validate(field, position) == QValidator::Acceptable;
        fields << field;
    }
    return fields;
}

QString address(FuzzedDataProvider &in)
{
    if (in.ConsumeBool()) {
        bool complete = false;
        return NetworkAddress::dotted(octets(in, &complete));
    }
    return QString::fromUtf8(in.ConsumeRandomLengthString(40).c_str());
}

void wiredEditors(FuzzedDataProvider &in)
{
    const int port = in.ConsumeIntegralInRange(-1, 2);
    bool complete = false;
    const std::string dotted = NetworkAddress::dotted(octets(in, &complete)).toStdString();
    const CommandText set = in.ConsumeBool() ? DeviceCommands::address(port, dotted) : DeviceCommands::mask(port, dotted);
    check(set);
    // Four whole octets on a real port always make a command.
    if (complete && (port == 0 || port == 1))
        FUZZ_CHECK(set.isValid(), QByteArray::fromStdString(dotted));
    check(DeviceCommands::gateway(dotted));
    check(DeviceCommands::up(port));
    // Enabling a port puts its stored address, any 32 bits of the record.
    const CommandText enable = DeviceCommands::upWithAddress(port, in.ConsumeIntegral<quint32>());
    check(enable);
    FUZZ_CHECK(enable.isValid() == (port == 0 || port == 1), enable.text());
    check(DeviceCommands::down(port));
}

void routeRules(FuzzedDataProvider &in)
{
    RouteSituation s;
    // A selector row (-1 while none is current); rows past the last are
    // not reachable but cost nothing to try.
    s.selection = in.ConsumeIntegralInRange(-1, 300);
    // Register 78 is read as its low byte.
    s.storedSelection = in.ConsumeIntegral<quint8>();
    s.secondPort = in.ConsumeBool();
    s.wlanPage = in.ConsumeBool();
    s.mobilePage = in.ConsumeBool();
    s.wlanAddress = address(in);
    s.pppHasAddress = in.ConsumeBool();
    bool complete[2] = {};
    for (int port = 0; port < 2; ++port)
        s.gateway[port] = NetworkAddress::dotted(octets(in, &complete[port]));
    const std::vector<CommandText> commands = RouteRules::commands(s);
    checkAll(commands);
    if (s.selection != RouteRules::sharedRow(s.secondPort)) {
        // The last two add the wired routes; whole gateways always make them.
        FUZZ_CHECK(commands.size() >= 4, QByteArray::number(int(commands.size())));
        for (int port = 0; port < 2; ++port) {
            if (complete[port])
                FUZZ_CHECK(commands.at(commands.size() - 2 + port).isValid(), s.gateway[port].toLatin1());
        }
    }
}

void wlanAddressing(FuzzedDataProvider &in)
{
    bool complete = false;
    const QString typed = NetworkAddress::dotted(octets(in, &complete));
    // The page passes its own field numbers; 5 stands for one it has not.
    const int type = in.ConsumeIntegralInRange(0, 5);
    const std::vector<CommandText> commands = WlanAddressing::applyCommands(WlanAddressing::ValueType(type), typed);
    checkAll(commands);
    if (complete) {
        for (const CommandText &command : commands)
            FUZZ_CHECK(command.isValid(), typed.toLatin1());
    }
    const QString lease = address(in);
    const std::vector<CommandText> route = WlanAddressing::leaseCommands(lease, in.ConsumeIntegral<quint8>(), in.ConsumeBool());
    checkAll(route);
    FUZZ_CHECK(route.empty() == !CommandText::isIpv4(lease), lease.toUtf8());
}

void clockFields(FuzzedDataProvider &in)
{
    int values[6];
    for (int &value : values)
        value = in.ConsumeBool() ? in.ConsumeIntegralInRange(-1, 2100) : in.ConsumeIntegral<int>();
    const QByteArrayList texts = DateTimeDialog::clockCommands(values[0], values[1], values[2], values[3],
                                                               values[4], values[5]);
    FUZZ_CHECK(texts.size() == 3, QByteArray::number(texts.size()));
    for (const QByteArray &text : texts) {
        FUZZ_CHECK(!text.isEmpty(), QByteArray("a clock command was refused"));
        checkText(text);
    }
}

void brightnessAndBeep(FuzzedDataProvider &in)
{
    // The slider's and keypad's steps, or one read back from the device.
    const int step = in.ConsumeBool() ? in.ConsumeIntegralInRange(-40, 100)
                                      : GeneralSettings::convertBrightnessFromOriginalValue(in.ConsumeIntegral<int>());
    const CommandText bright = DeviceCommands::setBright(GeneralSettings::convertBrightnessToOriginalValue(step));
    check(bright);
    FUZZ_CHECK(bright.isValid(), bright.errorString().toUtf8());
    check(DeviceCommands::setBeep(in.ConsumeBool()));
    check(DeviceCommands::reboot());
    check(DeviceCommands::sync());
}

void processName(FuzzedDataProvider &in)
{
    const std::string name = in.ConsumeRandomLengthString(100);
    const CommandText query = ProcessLookup::query(name.c_str());
    check(query);
    FUZZ_CHECK(query.isValid() == ArgumentGrammar::matches(QStringLiteral("word"), QByteArray(name.c_str())),
               QByteArray(name.c_str()));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzSupport::panelRoot();
    FuzzedDataProvider in(data, size);
    switch (in.ConsumeIntegralInRange(0, 5)) {
    case 0: wiredEditors(in); break;
    case 1: routeRules(in); break;
    case 2: wlanAddressing(in); break;
    case 3: clockFields(in); break;
    case 4: brightnessAndBeep(in); break;
    default: processName(in); break;
    }
    return 0;
}
