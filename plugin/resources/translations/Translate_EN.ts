<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name>Settings</name>
    <message>
        <source>Settings</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>System Settings</source>
        <translation>System Settings</translation>
    </message>
    <message>
        <source>Status:</source>
        <translation>Status:</translation>
    </message>
    <message>
        <source>u disk1</source>
        <translation>U disk 1</translation>
    </message>
    <message>
        <source>u disk2</source>
        <translation>U disk 2</translation>
    </message>
    <message>
        <source>SD</source>
        <translation>SD</translation>
    </message>
    <message>
        <source>General11</source>
        <translation>General</translation>
    </message>
    <message>
        <source>Network22</source>
        <translation>Network</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>Restart</source>
        <translation>Restart</translation>
    </message>
    <message>
        <source>General</source>
        <translation>General</translation>
    </message>
    <message>
        <source>Network</source>
        <translation>Network</translation>
    </message>
    <message>
        <source>Chinese</source>
        <translation>Chinese</translation>
    </message>
    <message>
        <source>English</source>
        <translation>English</translation>
    </message>
</context>
<context>
    <name>InputDialog</name>
    <message>
        <source>CLR</source>
        <translation>CLR</translation>
    </message>
    <message>
        <source>ENTER</source>
        <translation>ENTER</translation>
    </message>
    <message>
        <source>Min:</source>
        <translation>Min:</translation>
    </message>
    <message>
        <source>Max:</source>
        <translation>Max:</translation>
    </message>
    <message>
        <source>Tips</source>
        <translation>Tips</translation>
    </message>
    <message>
        <source>Input number is out of range!</source>
        <translation>Input number is out of range!</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>VersionInfoUI</name>
    <message>
        <source>Cloud Information</source>
        <translation>Cloud Information</translation>
    </message>
    <message>
        <source>Device name</source>
        <translation>Device name</translation>
    </message>
</context>
<context>
    <name>GeneralSettings</name>
    <message>
        <source>Brightness:</source>
        <translation>Brightness:</translation>
    </message>
    <message>
        <source>Date&amp;Time:</source>
        <translation>Date&amp;Time:</translation>
    </message>
    <message>
        <source>setting</source>
        <translation>setting</translation>
    </message>
    <message>
        <source>Buzzer:</source>
        <translation>Buzzer:</translation>
    </message>
    <message>
        <source>Auto Backlight Off:</source>
        <translation>Auto Backlight Off:</translation>
    </message>
    <message>
        <source>min</source>
        <translation>min</translation>
    </message>
    <message>
        <source>Initial Window:</source>
        <translation>Initial Window:</translation>
    </message>
    <message>
        <source>Mon</source>
        <translation>Mon</translation>
    </message>
    <message>
        <source>Tue</source>
        <translation>Tue</translation>
    </message>
    <message>
        <source>Wed</source>
        <translation>Wed</translation>
    </message>
    <message>
        <source>Thu</source>
        <translation>Thu</translation>
    </message>
    <message>
        <source>Fri</source>
        <translation>Fri</translation>
    </message>
    <message>
        <source>Sat</source>
        <translation>Sat</translation>
    </message>
    <message>
        <source>Sun</source>
        <translation>Sun</translation>
    </message>
    <message>
        <source>Invalid Day</source>
        <translation>Invalid Day</translation>
    </message>
</context>
</TS>
