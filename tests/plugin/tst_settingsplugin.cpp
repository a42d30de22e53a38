// The plug-in as the host sees it: loaded with QPluginLoader from the built
// library, never linked.
#include "settingsinterface.h"
#include "sysreg.h"
#include "testharness.h"
#include "testpanel.h"

#include <QCborMap>
#include <QCborValue>
#include <QDialog>
#include <QLibrary>
#include <QPluginLoader>
#include <QPointer>
#include <QtTest>

#include <elf.h>

namespace {

const char PluginPath[] = SETTINGS_PLUGIN_PATH;

template <typename Ehdr, typename Shdr>
QByteArray sectionOf(const QByteArray &elf, const char *wanted)
{
    if (elf.size() < int(sizeof(Ehdr)))
        return {};
    Ehdr header;
    memcpy(&header, elf.constData(), sizeof header);
    auto sectionAt = [&](int i, Shdr *out) {
        const qint64 at = qint64(header.e_shoff) + qint64(i) * header.e_shentsize;
        if (at < 0 || at + qint64(sizeof(Shdr)) > elf.size())
            return false;
        memcpy(out, elf.constData() + at, sizeof(Shdr));
        return true;
    };
    Shdr names;
    if (!sectionAt(header.e_shstrndx, &names))
        return {};
    for (int i = 0; i < header.e_shnum; ++i) {
        Shdr section;
        if (!sectionAt(i, &section) || section.sh_name >= names.sh_size)
            continue;
        const char *name = elf.constData() + names.sh_offset + section.sh_name;
        if (qstrcmp(name, wanted) == 0 && qint64(section.sh_offset + section.sh_size) <= elf.size())
            return elf.mid(int(section.sh_offset), int(section.sh_size));
    }
    return {};
}

QByteArray elfSection(const QString &path, const char *name)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray elf = file.readAll();
    if (elf.size() < EI_NIDENT || !elf.startsWith(ELFMAG))
        return {};
    return elf.at(EI_CLASS) == ELFCLASS64 ? sectionOf<Elf64_Ehdr, Elf64_Shdr>(elf, name)
                                          : sectionOf<Elf32_Ehdr, Elf32_Shdr>(elf, name);
}

quint8 registerByte(unsigned index)
{
    quint8 value[8] = {};
    SysReg_Read(index, value);
    return value[0];
}

} // namespace

class TestSettingsPlugin : public QObject
{
    Q_OBJECT

private slots:
    void loadsByInterfaceId();
    void metadataSection();
    void instanceIsSharedUntilDeleted();
    void metacastNames();
    void createInstanceBuildsFreshInitialisedWindows();
};

void TestSettingsPlugin::loadsByInterfaceId()
{
    TestPanel panel;
    QPluginLoader loader(QString::fromLocal8Bit(PluginPath));
    QCOMPARE(loader.metaData().value("IID").toString(), QStringLiteral("cn.tavro.SettingsInterface"));
    QCOMPARE(loader.metaData().value("className").toString(), QStringLiteral("SettingsPlugin"));
    QVERIFY(loader.metaData().value("MetaData").toObject().isEmpty());
    QVERIFY(!loader.metaData().value("debug").toBool());
    QObject *instance = loader.instance();
    QVERIFY2(instance, qPrintable(loader.errorString()));
    QCOMPARE(instance->metaObject()->className(), "SettingsPlugin");
    QVERIFY(qobject_cast<SettingsInterface *>(instance));
}

void TestSettingsPlugin::metadataSection()
{
    const QByteArray section = elfSection(QString::fromLocal8Bit(PluginPath), ".qtmetadata");
    QVERIFY2(!section.isEmpty(), "the library has no .qtmetadata section");
    const QByteArray magic("QTMETADATA !");
    QVERIFY(section.startsWith(magic));
    // Format version 0, Qt 5.15, no special build requirements.
    QCOMPARE(section.mid(magic.size(), 4), QByteArray("\x00\x05\x0f\x00", 4));

    QCborParserError error;
    const QCborValue value = QCborValue::fromCbor(section.mid(magic.size() + 4), &error);
    QCOMPARE(error.error, QCborError::NoError);
    QVERIFY(value.isMap());
    const QCborMap map = value.toMap();
    QCOMPARE(map.size(), 2);
    QCOMPARE(map.value(2).toString(), QStringLiteral("cn.tavro.SettingsInterface"));
    QCOMPARE(map.value(3).toString(), QStringLiteral("SettingsPlugin"));
    QVERIFY(!map.contains(4));
}

void TestSettingsPlugin::instanceIsSharedUntilDeleted()
{
    QLibrary library(QString::fromLocal8Bit(PluginPath));
    QVERIFY2(library.load(), qPrintable(library.errorString()));
    using InstanceFunction = QObject *(*)();
    auto instance = reinterpret_cast<InstanceFunction>(library.resolve("qt_plugin_instance"));
    QVERIFY(instance);
    QObject *first = instance();
    QVERIFY(first);
    QCOMPARE(instance(), first);
    QCOMPARE(first->parent(), nullptr);

    first->setProperty("generation", 1);
    QPointer<QObject> watch(first);
    delete first;
    QVERIFY(watch.isNull());
    QObject *second = instance();
    QVERIFY(second);
    QCOMPARE(second->metaObject()->className(), "SettingsPlugin");
    QVERIFY(!second->property("generation").isValid());   // a new object, even at a reused address
    QCOMPARE(instance(), second);
}

void TestSettingsPlugin::metacastNames()
{
    QPluginLoader loader(QString::fromLocal8Bit(PluginPath));
    QObject *plugin = loader.instance();
    QVERIFY(plugin);
    void *byId = plugin->qt_metacast("cn.tavro.SettingsInterface");
    void *byName = plugin->qt_metacast("SettingsInterface");
    QVERIFY(byId);
    QCOMPARE(byId, byName);
    QCOMPARE(byId, static_cast<void *>(qobject_cast<SettingsInterface *>(plugin)));
    QCOMPARE(plugin->qt_metacast("SettingsPlugin"), static_cast<void *>(plugin));
    QCOMPARE(plugin->qt_metacast("QObject"), static_cast<void *>(plugin));
    QCOMPARE(plugin->qt_metacast(nullptr), nullptr);
    QCOMPARE(plugin->qt_metacast("QDialog"), nullptr);
}

void TestSettingsPlugin::createInstanceBuildsFreshInitialisedWindows()
{
    TestPanel panel;
    QVERIFY(panel.isValid());
    QPluginLoader loader(QString::fromLocal8Bit(PluginPath));
    auto *plugin = qobject_cast<SettingsInterface *>(loader.instance());
    QVERIFY(plugin);

    QCOMPARE(registerByte(SysRegIdx::SettingsWindowOpen) & 1, 0);
    QScopedPointer<QDialog> first(plugin->createInstance());
    QVERIFY(first);
    QCOMPARE(registerByte(SysRegIdx::SettingsWindowOpen) & 1, 1);

    const quint8 closed = 0;
    SysReg_Write(SysRegIdx::SettingsWindowOpen, &closed, 1);
    QScopedPointer<QDialog> second(plugin->createInstance());
    QVERIFY(second);
    QVERIFY(first.data() != second.data());
    QCOMPARE(second->parent(), nullptr);
    QCOMPARE(registerByte(SysRegIdx::SettingsWindowOpen) & 1, 1);
    QCOMPARE(first->metaObject()->className(), "Settings");
    QCOMPARE(second->metaObject()->className(), "Settings");
    // Both read the device image while being built.
    QCOMPARE(panel.calls("readee").size() >= 6, true);
}

PANEL_GUI_TEST_MAIN(TestSettingsPlugin)
#include "tst_settingsplugin.moc"
