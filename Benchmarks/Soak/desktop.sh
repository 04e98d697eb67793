# shellcheck shell=bash
# SPDX-FileCopyrightText: 2026 the Sallowmere authors
# SPDX-License-Identifier: MIT
#
# To be sourced: the desktop of the soaked panel and everything that is started on it. Whatever is
# started leads a process group of its own, by which it is ended.

# By name.
declare -A processes=()

# start NAME COMMAND...
start() {
    local name=$1
    shift
    setsid "$@" </dev/null >>"$SOAK_PLACE/logs/$name" 2>&1 9>&- &
    processes[$name]=$!
}

# signal NAME SIGNAL
signal() {
    kill "-$2" "${processes[$1]}" 2>/dev/null || true
}

isGroupAlive() {
    kill -0 -- "-$1" 2>/dev/null
}

# stop NAME: with all that it started.
stop() {
    local group=${processes[$1]:-} turn
    [[ -n $group ]] || return 0
    unset "processes[$1]"
    kill -TERM -- "-$group" 2>/dev/null || true
    # Only what goes on receives the signal.
    kill -CONT -- "-$group" 2>/dev/null || true
    for turn in {1..30}; do
        isGroupAlive "$group" || break
        ((turn < 30)) || kill -KILL -- "-$group" 2>/dev/null || true
        sleep 0.1
    done
    wait "$group" 2>/dev/null || true
}

stopAll() {
    local name
    for name in panel hand "${!processes[@]}"; do
        [[ $name == server || $name == bus ]] || stop "$name"
    done
    stop bus
    stop server
}

# waitFor WHAT COMMAND...
waitFor() {
    local what=$1 turn
    shift
    for turn in {1..300}; do
        ! "$@" || return 0
        sleep 0.1
    done
    fail "waited in vain for $what after $turn turns"
}

makeHome() {
    quietly "the home directory could not be written" "$SOAK_TOOLS/make-demo-home" "$SOAK_HOME"
    mkdir -p "$SOAK_HOME"/{named,programs}
    ln -s /bin/sleep "$SOAK_HOME/named/claude"
    cp "$SOAK_TOOLS/assistant" "$SOAK_HOME/programs/claude"
    cp "$SOAK_TOOLS/folder-opener" "$SOAK_HOME/programs/xdg-open"
    : >"$SOAK_HOME/prompts"
    sed -i -e 's/"usageAPIEnabled": false,/"usageAPIEnabled": true,/' \
        -e "s|^{\$|{\n  \"claudeBinary\": \"$SOAK_HOME/programs/claude\",|" \
        "$SOAK_HOME/.config/sallowmere/settings.json"
    # The demo's own token soon expires.
    sed -i "s/\"expiresAt\":[0-9]*/\"expiresAt\":$(((EPOCHSECONDS + 864000) * 1000))/" \
        "$SOAK_HOME/.claude/.credentials.json"
}

makeCertificate() {
    quietly "the certificate could not be made" openssl req -x509 -newkey ec \
        -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 30 -subj '/CN=sallowmere soak' \
        -addext subjectAltName=IP:127.0.0.1 -keyout "$SOAK_PLACE/key.pem" \
        -out "$SOAK_PLACE/certificate.pem"
    cp "$SOAK_PLACE/certificate.pem" "$SOAK_PLACE/certificates"
    quietly "the certificate could not be named" openssl rehash "$SOAK_PLACE/certificates"
}

hasLine() {
    [[ $(wc -l <"$1") -gt 0 ]]
}

startServer() {
    # It writes its number to that descriptor.
    # shellcheck disable=SC2016 # expanded by the inner shell
    start server bash -c 'exec Xvfb -displayfd 3 -nolisten tcp -noreset -screen 0 1920x1080x24 \
        3>"$SOAK_PLACE/display"'
    : >>"$SOAK_PLACE/display"
    waitFor "the X server" hasLine "$SOAK_PLACE/display"
    DISPLAY=:$(<"$SOAK_PLACE/display")
    export DISPLAY
}

# What can be started on demand is what the window managers need, and no keyring.
startBus() {
    local services=$SOAK_PLACE/services
    mkdir "$services"
    cp /usr/share/dbus-1/services/org.xfce.Xfconf.service "$services"
    cat >"$SOAK_PLACE/bus.conf" <<TEXT
<busconfig>
  <type>session</type>
  <listen>unix:path=$SOAK_PLACE/runtime/bus</listen>
  <servicedir>$services</servicedir>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
TEXT
    start bus env "${surroundings[@]}" dbus-daemon --nofork --nopidfile \
        --config-file="$SOAK_PLACE/bus.conf"
    waitFor "the bus" test -S "$SOAK_PLACE/runtime/bus"
}

# Without it the compositor would store its settings at first, begin anew and find itself there.
configureCompositor() {
    local directory=$SOAK_PLACE/desktop/.config/xfce4/xfconf/xfce-perchannel-xml
    mkdir -p "$directory"
    cat >"$directory/xfwm4.xml" <<TEXT
<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfwm4" version="1.0">
  <property name="general" type="empty">
    <property name="use_compositing" type="bool" value="true"/>
  </property>
</channel>
TEXT
}

startDesktop() {
    surroundings=(HOME="$SOAK_PLACE/desktop" XDG_RUNTIME_DIR="$SOAK_PLACE/runtime" LANG=C.UTF-8
        DBUS_SESSION_BUS_ADDRESS="unix:path=$SOAK_PLACE/runtime/bus" NO_AT_BRIDGE=1
        GSETTINGS_BACKEND=memory)
    configureCompositor
    startServer
    surroundings+=(DISPLAY="$DISPLAY")
    startBus
    start manager env "${surroundings[@]}" "$SOAK_TOOLS/manager"
    waitFor "the window manager" isManaged
    awayWithPointer
}

isManaged() {
    xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q '#'
}

awayWithPointer() {
    xdotool mousemove 300 690
}

# The panel sees one certificate in the system's place: in a view of the file system that nobody
# else has.
startPanel() {
    local own=(unshare --mount) back=()
    if ((EUID != 0)); then
        own=(unshare --map-root-user --mount)
        back=(unshare --map-user="$(id -u)" --map-group="$(id -g)")
    fi
    # shellcheck disable=SC2016 # expanded by the inner shell
    start panel env -i "${surroundings[@]}" HOME="$SOAK_HOME" \
        PATH="$SOAK_HOME/programs:/usr/bin:/bin" "${own[@]}" sh -c \
        'mount --bind "$0" /etc/ssl/certs && exec "$@"' \
        "$SOAK_PLACE/certificates" "${back[@]}" "$SOAK_PLACE/bin/sallowmere"
    waitFor "the panel" isPanelShown
}

isPanelShown() {
    xdotool search --onlyvisible --name '^Sallowmere$' >/dev/null 2>&1
}
