#include "networkstandins.h"

#include <QFile>
#include <QList>

#include <algorithm>

namespace {

// Shared by the stand-ins that keep the panel's network. awk works on the
// addresses as numbers: the shell has no dotted-quad arithmetic.
const char NetFunctions[] = R"SH(
PORTS="$STATE/ports"
IFACES="$STATE/interfaces"
ROUTES="$STATE/routes"
[ -f "$PORTS" ] || exit 0
AWK_LIB='
function num(ip,  a) { split(ip, a, "."); return ((a[1] * 256 + a[2]) * 256 + a[3]) * 256 + a[4] }
function dotted(n) { return int(n / 16777216) "." (int(n / 65536) % 256) "." (int(n / 256) % 256) "." (n % 256) }
function prefix(mask,  n, p) { n = num(mask); p = 0; while (p < 32 && n >= 2 ^ (31 - p)) { n -= 2 ^ (31 - p); p++ } return p }
function net(ip, p,  s) { s = 2 ^ (32 - p); return int(num(ip) / s) * s }
function field(name,  i) { for (i = 1; i < NF; i++) if ($i == name) return $(i + 1); return "" }
'
is_ip() {
    case $1 in ''|*[!0-9.]*) return 1 ;; esac
    old_ifs=$IFS; IFS=.; set -- $1; IFS=$old_ifs
    [ $# -eq 4 ] || return 1
    for octet in "$@"; do
        [ -n "$octet" ] && [ "${#octet}" -le 3 ] && [ "$octet" -le 255 ] || return 1
    done
}
has_port() { grep -qx -- "$1" "$PORTS"; }
# Field $2 of the port's line: 2 address, 3 mask, 4 up or down.
port_field() { awk -v d="$1" -v i="$2" '$1 == d { print $i }' "$IFACES"; }
# The port whose subnet holds the address, if it is up.
port_for() {
    awk -v gw="$1" "$AWK_LIB"'$4 == "up" && $2 != "" && net($2, prefix($3)) == net(gw, prefix($3)) { print $1; exit }' "$IFACES"
}
# Whether a route through port $1 to gateway $2 (none: on the link) can be made.
reachable() {
    awk -v d="$1" -v gw="$2" "$AWK_LIB"'
        $1 == d && $4 == "up" && $2 != "" { ok = gw == "" || net($2, prefix($3)) == net(gw, prefix($3)) }
        END { exit ok ? 0 : 1 }' "$IFACES"
}
# The table the kernel would now have: the default routes still usable,
# lowest metric first, then the subnet of each port that is up.
rebuild() {
    awk "$AWK_LIB"'
        FILENAME == ARGV[1] { if ($4 == "up" && $2 != "") { order[++ports] = $1; addr[$1] = $2; len[$1] = prefix($3) } next }
        $1 == "default" {
            d = field("dev"); gw = field("via"); m = field("metric") + 0
            if (!(d in addr) || (gw != "" && net(gw, len[d]) != net(addr[d], len[d]))) next
            for (i = ++kept; i > 1 && metric[i - 1] > m; i--) { line[i] = line[i - 1]; metric[i] = metric[i - 1] }
            line[i] = $0; metric[i] = m
        }
        END {
            for (i = 1; i <= kept; i++) print line[i]
            # The kernel lists the subnets by address.
            for (i = 1; i <= ports; i++) {
                d = order[i]; n = net(addr[d], len[d])
                for (j = i; j > 1 && key[j - 1] > n; j--) { key[j] = key[j - 1]; link[j] = link[j - 1] }
                key[j] = n; link[j] = dotted(n) "/" len[d] " dev " d " proto kernel scope link src " addr[d]
            }
            for (i = 1; i <= ports; i++) print link[i]
        }' "$IFACES" "$ROUTES" > "$ROUTES.new" && mv "$ROUTES.new" "$ROUTES"
}
)SH";

const char Ifconfig[] = R"SH(
dev=$1
[ $# -gt 1 ] && has_port "$dev" || exit 0
shift
address=$(port_field "$dev" 2)
mask=$(port_field "$dev" 3)
state=$(port_field "$dev" 4)
while [ $# -gt 0 ]; do
    case $1 in
        up|down) state=$1 ;;
        netmask) is_ip "$2" && mask=$2; [ $# -gt 1 ] && shift ;;
        *)
            # A new address takes the mask of its class, as in the kernel,
            # until a netmask is set.
            if is_ip "$1"; then
                address=$1
                first=${1%%.*}
                if [ "$first" -lt 128 ]; then mask=255.0.0.0
                elif [ "$first" -lt 192 ]; then mask=255.255.0.0
                else mask=255.255.255.0; fi
            fi ;;
    esac
    shift
done
awk -v d="$dev" -v line="$dev $address $mask ${state:-down}" '
    $1 == d { print line; done = 1; next }
    { print }
    END { if (!done) print line }' "$IFACES" > "$IFACES.new" && mv "$IFACES.new" "$IFACES"
rebuild
)SH";

const char Route[] = R"SH(
action=$1
{ [ "$action" = add ] || [ "$action" = del ]; } && [ "$2" = default ] || exit 0
shift 2
gw=; dev=; metric=0
while [ $# -gt 0 ]; do
    case $1 in
        gw) gw=$2 ;;
        dev) dev=$2 ;;
        metric) metric=$2 ;;
        *) shift; continue ;;
    esac
    [ $# -gt 1 ] && shift
    shift
done
case $metric in ''|*[!0-9]*) metric=0 ;; esac
[ -z "$gw" ] || is_ip "$gw" || exit 0
if [ "$action" = del ]; then
    awk -v d="$dev" -v gw="$gw" "$AWK_LIB"'
        !done && $1 == "default" && (d == "" || field("dev") == d) && (gw == "" || field("via") == gw) { done = 1; next }
        { print }' "$ROUTES" > "$ROUTES.new" && mv "$ROUTES.new" "$ROUTES"
    rebuild
    exit 0
fi
[ -n "$dev" ] || dev=$(port_for "$gw")
[ -n "$dev" ] && reachable "$dev" "$gw" || exit 0
line=default
[ -n "$gw" ] && line="$line via $gw"
line="$line dev $dev"
[ -z "$gw" ] && line="$line scope link"
[ "$metric" -ne 0 ] && line="$line metric $metric"
grep -qxF -- "$line" "$ROUTES" || echo "$line" >> "$ROUTES"
rebuild
)SH";

// No address: the simulated world lies beyond the panel's routes.
const char Ping[] = R"SH(
host=
while [ $# -gt 0 ]; do
    case $1 in
        -[cWwistI]) [ $# -gt 1 ] && shift ;;
        -*) ;;
        *) [ -n "$host" ] || host=$1 ;;
    esac
    shift
done
case $(cat "$STATE/outer-net" 2>/dev/null) in
    up)
        echo "PING $host (203.0.113.80) 56(84) bytes of data."
        echo "64 bytes from 203.0.113.80 (203.0.113.80): icmp_seq=1 ttl=52 time=28.4 ms"
        echo
        echo "--- $host ping statistics ---"
        echo "1 packets transmitted, 1 received, 0% packet loss, time 0ms" ;;
    down)
        echo "PING $host (203.0.113.80) 56(84) bytes of data."
        echo
        echo "--- $host ping statistics ---"
        echo "1 packets transmitted, 0 received, 100% packet loss, time 0ms"
        exit 1 ;;
esac
exit 0
)SH";

const char *const NetworkTools[] = {"ifconfig", "route", "ip", "udhcpc", "killall", "ping"};

QString connectedRoute(const QString &port, const QStringList &address)
{
    const QStringList ip = address.value(0).split(QLatin1Char('.'));
    const QStringList mask = address.value(1).split(QLatin1Char('.'));
    QStringList network;
    int bits = 0;
    for (int i = 0; i < 4; ++i) {
        const uint m = mask.value(i).toUInt();
        network << QString::number(ip.value(i).toUInt() & m);
        for (uint b = m; b; b >>= 1)
            bits += int(b & 1);
    }
    return QStringLiteral("%1/%2 dev %3 proto kernel scope link src %4\n")
        .arg(network.join(QLatin1Char('.')))
        .arg(bits)
        .arg(port, address.value(0));
}

quint32 networkOf(const QByteArray &line)
{
    const QList<QByteArray> parts = line.left(line.indexOf('/')).split('.');
    quint32 value = 0;
    for (const QByteArray &part : parts)
        value = value << 8 | (part.toUInt() & 0xff);
    return value;
}

bool throughPort(const QByteArray &line, const QString &port)
{
    const QList<QByteArray> words = line.split(' ');
    const int dev = words.indexOf("dev");
    return dev >= 0 && words.value(dev + 1) == port.toLatin1();
}

} // namespace

namespace NetworkStandIns {

QByteArray portsWithLink(const QByteArray &ports, const QString &port, bool present)
{
    QByteArray result;
    for (const QByteArray &line : ports.split('\n')) {
        if (!line.isEmpty() && line != port.toLatin1())
            result += line + '\n';
    }
    if (present)
        result += port.toLatin1() + '\n';
    return result;
}

QByteArray interfacesWithLink(const QByteArray &interfaces, const QString &port, const QString &address,
                              const QString &mask)
{
    QByteArray result;
    for (const QByteArray &line : interfaces.split('\n')) {
        if (!line.isEmpty() && line.split(' ').value(0) != port.toLatin1())
            result += line + '\n';
    }
    if (!address.isEmpty())
        result += QStringLiteral("%1 %2 %3 up\n").arg(port, address, mask).toLatin1();
    return result;
}

QByteArray routesWithLink(const QByteArray &routes, const QString &port, const QString &address, const QString &mask)
{
    QList<QByteArray> defaults;
    QList<QByteArray> subnets;
    for (const QByteArray &line : routes.split('\n')) {
        if (line.isEmpty() || throughPort(line, port))
            continue;
        (line.startsWith("default") ? defaults : subnets) << line;
    }
    if (!address.isEmpty())
        subnets << connectedRoute(port, {address, mask}).trimmed().toLatin1();
    std::stable_sort(subnets.begin(), subnets.end(), [](const QByteArray &a, const QByteArray &b) {
        return networkOf(a) < networkOf(b);
    });
    QByteArray result;
    for (const QByteArray &line : defaults + subnets)
        result += line + '\n';
    return result;
}

QStringList toolNames()
{
    QStringList names;
    for (const char *tool : NetworkTools)
        names << QString::fromLatin1(tool);
    return names;
}

QByteArray body(const QString &tool)
{
    if (tool == QLatin1String("ifconfig"))
        return QByteArray(NetFunctions) + Ifconfig;
    if (tool == QLatin1String("route"))
        return QByteArray(NetFunctions) + Route;
    if (tool == QLatin1String("ping"))
        return Ping;
    return QByteArray();
}

QByteArray passThrough(const QString &realPath)
{
    QByteArray quoted = QFile::encodeName(realPath);
    quoted.replace('\'', "'\\''");
    return "exec '" + quoted + "' \"$@\"\n";
}

QByteArray interfacesFile(const QStringList &ports, const QList<QStringList> &addresses)
{
    QByteArray text;
    for (int i = 0; i < ports.size(); ++i) {
        const QStringList address = addresses.value(i);
        text += QStringLiteral("%1 %2 %3 up\n").arg(ports.at(i), address.value(0), address.value(1)).toLatin1();
    }
    return text;
}

QByteArray routesFile(const QStringList &ports, const QList<QStringList> &addresses)
{
    QByteArray text;
    for (int i = 0; i < ports.size(); ++i)
        text += connectedRoute(ports.at(i), addresses.value(i)).toLatin1();
    return text;
}

} // namespace NetworkStandIns
