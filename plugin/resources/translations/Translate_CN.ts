<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>Settings</name>
    <message>
        <source>Settings</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>System Settings</source>
        <translation>系统设置</translation>
    </message>
    <message>
        <source>Status:</source>
        <translation>状态：</translation>
    </message>
    <message>
        <source>u disk1</source>
        <translation>U盘1</translation>
    </message>
    <message>
        <source>u disk2</source>
        <translation>U盘2</translation>
    </message>
    <message>
        <source>SD</source>
        <translation>SD卡</translation>
    </message>
    <message>
        <source>General11</source>
        <translation>通用</translation>
    </message>
    <message>
        <source>Network22</source>
        <translation>网络</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>版本</translation>
    </message>
    <message>
        <source>Restart</source>
        <translation>重启</translation>
    </message>
    <message>
        <source>General</source>
        <translation>通用</translation>
    </message>
    <message>
        <source>Network</source>
        <translation>网络</translation>
    </message>
    <message>
        <source>Chinese</source>
        <translation>中文</translation>
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
        <translation>清除</translation>
    </message>
    <message>
        <source>ENTER</source>
        <translation>确认</translation>
    </message>
    <message>
        <source>Min:</source>
        <translation>最小值：</translation>
    </message>
    <message>
        <source>Max:</source>
        <translation>最大值：</translation>
    </message>
    <message>
        <source>Tips</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>Input number is out of range!</source>
        <translation>输入的数值超出范围！</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
</context>
<context>
    <name>VersionInfoUI</name>
    <message>
        <source>Cloud Information</source>
        <translation>云信息</translation>
    </message>
    <message>
        <source>Device name</source>
        <translation>设备名称</translation>
    </message>
</context>
<context>
    <name>GeneralSettings</name>
    <message>
        <source>Brightness:</source>
        <translation>亮度：</translation>
    </message>
    <message>
        <source>Date&amp;Time:</source>
        <translation>日期时间：</translation>
    </message>
    <message>
        <source>setting</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>Buzzer:</source>
        <translation>蜂鸣器：</translation>
    </message>
    <message>
        <source>Auto Backlight Off:</source>
        <translation>自动关闭背光：</translation>
    </message>
    <message>
        <source>min</source>
        <translation>分钟</translation>
    </message>
    <message>
        <source>Initial Window:</source>
        <translation>初始画面：</translation>
    </message>
    <message>
        <source>Mon</source>
        <translation>周一</translation>
    </message>
    <message>
        <source>Tue</source>
        <translation>周二</translation>
    </message>
    <message>
        <source>Wed</source>
        <translation>周三</translation>
    </message>
    <message>
        <source>Thu</source>
        <translation>周四</translation>
    </message>
    <message>
        <source>Fri</source>
        <translation>周五</translation>
    </message>
    <message>
        <source>Sat</source>
        <translation>周六</translation>
    </message>
    <message>
        <source>Sun</source>
        <translation>周日</translation>
    </message>
    <message>
        <source>Invalid Day</source>
        <translation>无效日期</translation>
    </message>
</context>
<context>
    <name>WiredPortPage</name>
    <message>
        <source>IP Address:</source>
        <translation>IP 地址：</translation>
    </message>
    <message>
        <source>Subnet Mask:</source>
        <translation>子网掩码：</translation>
    </message>
    <message>
        <source>Gateway:</source>
        <translation>网关：</translation>
    </message>
    <message>
        <source>Wired Network %1 DNS Server Info:</source>
        <translation>有线网络 %1 DNS 服务器信息：</translation>
    </message>
    <message>
        <source>First DNS Server:</source>
        <translation>首选 DNS 服务器：</translation>
    </message>
    <message>
        <source>Backup DNS Server:</source>
        <translation>备用 DNS 服务器：</translation>
    </message>
    <message>
        <source>MAC Address:</source>
        <translation>MAC 地址：</translation>
    </message>
    <message>
        <source>Setting:</source>
        <translation>设置：</translation>
    </message>
    <message>
        <source>Default gateway info</source>
        <translation>默认网关信息</translation>
    </message>
    <message>
        <source>Set as default gateway</source>
        <translation>设为默认网关</translation>
    </message>
    <message>
        <source>OuterNet State:</source>
        <translation>外网状态：</translation>
    </message>
    <message>
        <source>test</source>
        <translation>测试</translation>
    </message>
    <message>
        <source>Disable Network</source>
        <translation>禁用网络</translation>
    </message>
    <message>
        <source>Network:</source>
        <translation>网络：</translation>
    </message>
</context>
<context>
    <name>NetworkSettings</name>
    <message>
        <source>wired network</source>
        <translation>有线网络</translation>
    </message>
    <message>
        <source>wireless network</source>
        <translation>无线网络</translation>
    </message>
    <message>
        <source>4G network</source>
        <translation>4G网络</translation>
    </message>
    <message>
        <source>Mobile network</source>
        <translation>移动网络</translation>
    </message>
    <message>
        <source>VPN</source>
        <translation>VPN</translation>
    </message>
    <message>
        <source>Static IP</source>
        <translation>静态 IP</translation>
    </message>
    <message>
        <source>Dynamic IP</source>
        <translation>动态 IP</translation>
    </message>
    <message>
        <source>Network:</source>
        <translation>网络：</translation>
    </message>
    <message>
        <source>Gateway:</source>
        <translation>网关：</translation>
    </message>
    <message>
        <source>Tips</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>IP is conflict with eth1!</source>
        <translation>IP 与 eth1 冲突！</translation>
    </message>
    <message>
        <source>IP is conflict with eth0!</source>
        <translation>IP 与 eth0 冲突！</translation>
    </message>
    <message>
        <source>test successful</source>
        <translation>测试成功</translation>
    </message>
    <message>
        <source>test failed</source>
        <translation>测试失败</translation>
    </message>
</context>
<context>
    <name>MobileNetworkUI</name>
    <message>
        <source>4G Switch:</source>
        <translation>4G 开关：</translation>
    </message>
    <message>
        <source>Network Status:</source>
        <translation>网络状态：</translation>
    </message>
    <message>
        <source>Connecting to internet...</source>
        <translation>正在连接互联网...</translation>
    </message>
    <message>
        <source>Signal Strength:</source>
        <translation>信号强度：</translation>
    </message>
    <message>
        <source>4G DNS Server Infor：</source>
        <translation>4G DNS 服务器信息：</translation>
    </message>
    <message>
        <source>DNS1:</source>
        <translation>首选 DNS：</translation>
    </message>
    <message>
        <source>DNS2:</source>
        <translation>备用 DNS：</translation>
    </message>
    <message>
        <source>Default gateway info</source>
        <translation>默认网关信息</translation>
    </message>
    <message>
        <source>Network:</source>
        <translation>网络：</translation>
    </message>
    <message>
        <source>OuterNet Ping test:</source>
        <translation>外网 Ping 测试：</translation>
    </message>
    <message>
        <source>test</source>
        <translation>测试</translation>
    </message>
    <message>
        <source>Not connected</source>
        <translation>未连接</translation>
    </message>
    <message>
        <source>Connecting in progress</source>
        <translation>正在连接</translation>
    </message>
    <message>
        <source>Connection successful</source>
        <translation>连接成功</translation>
    </message>
    <message>
        <source>wired network0</source>
        <translation>有线网络0</translation>
    </message>
    <message>
        <source>wired network1</source>
        <translation>有线网络1</translation>
    </message>
    <message>
        <source>4G network</source>
        <translation>4G网络</translation>
    </message>
</context>
<context>
    <name>VpnSetUI</name>
    <message>
        <source>VPN Service Information</source>
        <translation>VPN 服务信息</translation>
    </message>
    <message>
        <source>VPN Switch:</source>
        <translation>VPN 开关：</translation>
    </message>
    <message>
        <source>Server:</source>
        <translation>服务器：</translation>
    </message>
    <message>
        <source>Connection status:</source>
        <translation>连接状态：</translation>
    </message>
    <message>
        <source>connected</source>
        <translation>已连接</translation>
    </message>
</context>
<context>
    <name>WirelessPswDialog</name>
    <message>
        <source>Input Password </source>
        <translation>输入密码 </translation>
    </message>
    <message>
        <source>Password</source>
        <translation>密码</translation>
    </message>
    <message>
        <source>Show password</source>
        <translation>显示密码</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>连接</translation>
    </message>
    <message>
        <source>Input the password of %1</source>
        <translation>请输入 %1 的密码</translation>
    </message>
</context>
<context>
    <name>WirelessWgtUI</name>
    <message>
        <source>Disabled network</source>
        <translation>禁用网络</translation>
    </message>
    <message>
        <source>Tab to access WLAN settings</source>
        <translation>点击进入 WLAN 设置</translation>
    </message>
    <message>
        <source>Disabled</source>
        <translation>未连接</translation>
    </message>
    <message>
        <source>Static IP</source>
        <translation>静态 IP</translation>
    </message>
    <message>
        <source>IP address</source>
        <translation>IP 地址</translation>
    </message>
    <message>
        <source>Subnet mask</source>
        <translation>子网掩码</translation>
    </message>
    <message>
        <source>Default gateway</source>
        <translation>默认网关</translation>
    </message>
    <message>
        <source>MAC address</source>
        <translation>MAC 地址</translation>
    </message>
    <message>
        <source>Default NIC Information</source>
        <translation>默认网卡信息</translation>
    </message>
    <message>
        <source>Extranet ping test</source>
        <translation>外网 ping 测试</translation>
    </message>
    <message>
        <source>DNS Server Info</source>
        <translation>DNS 服务器信息</translation>
    </message>
    <message>
        <source>Preferred DNS</source>
        <translation>首选 DNS</translation>
    </message>
    <message>
        <source>Alternate DNS</source>
        <translation>备用 DNS</translation>
    </message>
    <message>
        <source>&lt;  WLAN Settings</source>
        <translation>&lt;  WLAN 设置</translation>
    </message>
    <message>
        <source>Reset WLAN</source>
        <translation>重置 WLAN</translation>
    </message>
    <message>
        <source>Connected WLAN</source>
        <translation>已连接的 WLAN</translation>
    </message>
    <message>
        <source>Select a nearby WLAN</source>
        <translation>选择附近的 WLAN</translation>
    </message>
    <message>
        <source>wired network0</source>
        <translation>有线网络0</translation>
    </message>
    <message>
        <source>wired network1</source>
        <translation>有线网络1</translation>
    </message>
    <message>
        <source>wireless network</source>
        <translation>无线网络</translation>
    </message>
    <message>
        <source>Online</source>
        <translation>已连接</translation>
    </message>
</context>
</TS>
