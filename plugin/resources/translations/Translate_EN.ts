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
<context>
    <name>WiredPortPage</name>
    <message>
        <source>IP Address:</source>
        <translation>IP Address:</translation>
    </message>
    <message>
        <source>Subnet Mask:</source>
        <translation>Subnet Mask:</translation>
    </message>
    <message>
        <source>Gateway:</source>
        <translation>Gateway:</translation>
    </message>
    <message>
        <source>Wired Network %1 DNS Server Info:</source>
        <translation>Wired Network %1 DNS Server Info:</translation>
    </message>
    <message>
        <source>First DNS Server:</source>
        <translation>First DNS Server:</translation>
    </message>
    <message>
        <source>Backup DNS Server:</source>
        <translation>Backup DNS Server:</translation>
    </message>
    <message>
        <source>MAC Address:</source>
        <translation>MAC Address:</translation>
    </message>
    <message>
        <source>Setting:</source>
        <translation>Setting:</translation>
    </message>
    <message>
        <source>Default gateway info</source>
        <translation>Default gateway info</translation>
    </message>
    <message>
        <source>Set as default gateway</source>
        <translation>Set as default gateway</translation>
    </message>
    <message>
        <source>OuterNet State:</source>
        <translation>OuterNet State:</translation>
    </message>
    <message>
        <source>test</source>
        <translation>test</translation>
    </message>
    <message>
        <source>Disable Network</source>
        <translation>Disable Network</translation>
    </message>
    <message>
        <source>Network:</source>
        <translation>Network:</translation>
    </message>
</context>
<context>
    <name>NetworkSettings</name>
    <message>
        <source>wired network</source>
        <translation>wired network</translation>
    </message>
    <message>
        <source>wireless network</source>
        <translation>wireless network</translation>
    </message>
    <message>
        <source>4G network</source>
        <translation>4G network</translation>
    </message>
    <message>
        <source>Mobile network</source>
        <translation>Mobile network</translation>
    </message>
    <message>
        <source>VPN</source>
        <translation>VPN</translation>
    </message>
    <message>
        <source>Static IP</source>
        <translation>Static IP</translation>
    </message>
    <message>
        <source>Dynamic IP</source>
        <translation>Dynamic IP</translation>
    </message>
    <message>
        <source>Network:</source>
        <translation>Network:</translation>
    </message>
    <message>
        <source>Gateway:</source>
        <translation>Gateway:</translation>
    </message>
    <message>
        <source>Tips</source>
        <translation>Tips</translation>
    </message>
    <message>
        <source>IP is conflict with eth1!</source>
        <translation>IP is conflict with eth1!</translation>
    </message>
    <message>
        <source>IP is conflict with eth0!</source>
        <translation>IP is conflict with eth0!</translation>
    </message>
    <message>
        <source>test successful</source>
        <translation>test successful</translation>
    </message>
    <message>
        <source>test failed</source>
        <translation>test failed</translation>
    </message>
</context>
<context>
    <name>MobileNetworkUI</name>
    <message>
        <source>4G Switch:</source>
        <translation>4G Switch:</translation>
    </message>
    <message>
        <source>Network Status:</source>
        <translation>Network Status:</translation>
    </message>
    <message>
        <source>Connecting to internet...</source>
        <translation>Connecting to internet...</translation>
    </message>
    <message>
        <source>Signal Strength:</source>
        <translation>Signal Strength:</translation>
    </message>
    <message>
        <source>4G DNS Server Infor：</source>
        <translation>4G DNS Server Infor：</translation>
    </message>
    <message>
        <source>DNS1:</source>
        <translation>DNS1:</translation>
    </message>
    <message>
        <source>DNS2:</source>
        <translation>DNS2:</translation>
    </message>
    <message>
        <source>Default gateway info</source>
        <translation>Default gateway info</translation>
    </message>
    <message>
        <source>Network:</source>
        <translation>Network:</translation>
    </message>
    <message>
        <source>OuterNet Ping test:</source>
        <translation>OuterNet Ping test:</translation>
    </message>
    <message>
        <source>test</source>
        <translation>test</translation>
    </message>
    <message>
        <source>Not connected</source>
        <translation>Not connected</translation>
    </message>
    <message>
        <source>Connecting in progress</source>
        <translation>Connecting in progress</translation>
    </message>
    <message>
        <source>Connection successful</source>
        <translation>Connection successful</translation>
    </message>
    <message>
        <source>wired network0</source>
        <translation>wired network0</translation>
    </message>
    <message>
        <source>wired network1</source>
        <translation>wired network1</translation>
    </message>
    <message>
        <source>4G network</source>
        <translation>4G network</translation>
    </message>
</context>
<context>
    <name>VpnSetUI</name>
    <message>
        <source>VPN Service Information</source>
        <translation>VPN Service Information</translation>
    </message>
    <message>
        <source>VPN Switch:</source>
        <translation>VPN Switch:</translation>
    </message>
    <message>
        <source>Server:</source>
        <translation>Server:</translation>
    </message>
    <message>
        <source>Connection status:</source>
        <translation>Connection status:</translation>
    </message>
    <message>
        <source>connected</source>
        <translation>connected</translation>
    </message>
</context>
<context>
    <name>WirelessPswDialog</name>
    <message>
        <source>Input Password </source>
        <translation>Input Password </translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Password</translation>
    </message>
    <message>
        <source>Show password</source>
        <translation>Show password</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Connect</translation>
    </message>
    <message>
        <source>Input the password of %1</source>
        <translation>Input the password of %1</translation>
    </message>
</context>
<context>
    <name>WirelessWgtUI</name>
    <message>
        <source>Disabled network</source>
        <translation>Disabled network</translation>
    </message>
    <message>
        <source>Tab to access WLAN settings</source>
        <translation>Tab to access WLAN settings</translation>
    </message>
    <message>
        <source>Disabled</source>
        <translation>Disabled</translation>
    </message>
    <message>
        <source>Static IP</source>
        <translation>Static IP</translation>
    </message>
    <message>
        <source>IP address</source>
        <translation>IP address</translation>
    </message>
    <message>
        <source>Subnet mask</source>
        <translation>Subnet mask</translation>
    </message>
    <message>
        <source>Default gateway</source>
        <translation>Default gateway</translation>
    </message>
    <message>
        <source>MAC address</source>
        <translation>MAC address</translation>
    </message>
    <message>
        <source>Default NIC Information</source>
        <translation>Default NIC Information</translation>
    </message>
    <message>
        <source>Extranet ping test</source>
        <translation>Extranet ping test</translation>
    </message>
    <message>
        <source>DNS Server Info</source>
        <translation>DNS Server Info</translation>
    </message>
    <message>
        <source>Preferred DNS</source>
        <translation>Preferred DNS</translation>
    </message>
    <message>
        <source>Alternate DNS</source>
        <translation>Alternate DNS</translation>
    </message>
    <message>
        <source>&lt;  WLAN Settings</source>
        <translation>&lt;  WLAN Settings</translation>
    </message>
    <message>
        <source>Reset WLAN</source>
        <translation>Reset WLAN</translation>
    </message>
    <message>
        <source>Connected WLAN</source>
        <translation>Connected WLAN</translation>
    </message>
    <message>
        <source>Select a nearby WLAN</source>
        <translation>Select a nearby WLAN</translation>
    </message>
    <message>
        <source>wired network0</source>
        <translation>wired network0</translation>
    </message>
    <message>
        <source>wired network1</source>
        <translation>wired network1</translation>
    </message>
    <message>
        <source>wireless network</source>
        <translation>wireless network</translation>
    </message>
    <message>
        <source>Online</source>
        <translation>Online</translation>
    </message>
</context>
</TS>
