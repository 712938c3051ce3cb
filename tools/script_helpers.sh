# shellcheck shell=bash
# Helpers shared by the shell scripts that run Tallybot against a private ngircd and the game
# simulator (packaging/check-deb.sh, tools/screenshot.sh). Sourced, not run.

# A TCP port on 127.0.0.1 that is free right now.
free_port() { python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])'; }

# write_ngircd_conf FILE PORT NAME INFO ADMIN EMAIL MOTD: a loopback-only ngircd with no PAM,
# ident or DNS lookups and no per-address connection limit, so local test clients connect at once.
write_ngircd_conf() {
    cat >"$1" <<CONF
[Global]
Name = $3
Info = $4
AdminInfo1 = $5
AdminInfo2 = $5
AdminEMail = $6
Listen = 127.0.0.1
Ports = $2
MotdPhrase = $7
[Limits]
MaxConnectionsIP = 0
[Options]
PAM = no
Ident = no
DNS = no
CONF
}
