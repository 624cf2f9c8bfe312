"""Certificates made while the cases run, and the authority that the system of this room trusts."""

import contextlib
import os
import shutil
import socket
import ssl
import subprocess
import tempfile
import threading

from pruefstand import warten

_riegel = threading.Lock()


def _openssl(*argumente, ordner):
    lauf = subprocess.run(["openssl", *argumente], cwd=ordner, capture_output=True, check=False)
    if lauf.returncode:
        raise RuntimeError(f"openssl {argumente}: {lauf.stderr.decode()}")


class Stelle:
    """A certificate authority. With `vertraut` it takes the place of all that the system trusts."""

    def __init__(self, vertraut=False):
        self.ordner = tempfile.mkdtemp(prefix="kalvaro-faults-")
        self.nummer = 0
        with open(os.path.join(self.ordner, "ca.cnf"), "w", encoding="ascii") as datei:
            datei.write("[ca]\ndefault_ca=x\n[x]\ndatabase=index\nserial=serial\nnew_certs_dir=.\n"
                        "certificate=ca.pem\nprivate_key=ca.key\npolicy=p\ndefault_md=sha256\n"
                        "default_days=30\nunique_subject=no\ncopy_extensions=none\n"
                        "[p]\ncommonName=optional\n[req]\ndistinguished_name=d\n[d]\n"
                        "[v3ca]\nbasicConstraints=critical,CA:TRUE\n"
                        "keyUsage=keyCertSign,cRLSign\n")
        with open(os.path.join(self.ordner, "index"), "w", encoding="ascii"):
            pass
        with open(os.path.join(self.ordner, "serial"), "w", encoding="ascii") as datei:
            datei.write("1000\n")
        self._ssl("req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", "ca.key", "-out",
                  "ca.pem", "-days", "30", "-subj", "/CN=Faults CA", "-config", "ca.cnf",
                  "-extensions", "v3ca")
        if vertraut:
            wurzeln = os.path.join(self.ordner, "wurzeln")
            os.mkdir(wurzeln)
            # As Debian has it: one file for each authority under its hash, and all in one file.
            shutil.copy(os.path.join(self.ordner, "ca.pem"), wurzeln)
            self._ssl("rehash", wurzeln)
            shutil.copy(os.path.join(self.ordner, "ca.pem"),
                        os.path.join(wurzeln, "ca-certificates.crt"))
            subprocess.run(["mount", "--bind", wurzeln, "/etc/ssl/certs"], check=True)

    def toeten(self):
        shutil.rmtree(self.ordner, ignore_errors=True)

    def _ssl(self, *argumente):
        _openssl(*argumente, ordner=self.ordner)

    def kontext(self, name, alternativen=None, schluessel="rsa:2048", von=None, bis=None,
                weiteres="", selbst=False, hash_="sha256"):
        """A server's TLS with a certificate for the common name `name` and the alternative names, as
        openssl writes them ("IP:127.0.0.1,DNS:x.test"); times as "20200101000000Z"."""
        with _riegel:
            self.nummer += 1
            nr = self.nummer
            key, csr, pem = f"{nr}.key", f"{nr}.csr", f"{nr}.pem"
            art = (["-newkey", schluessel] if ":" in schluessel else
                   ["-newkey", "ec", "-pkeyopt", f"ec_paramgen_curve:{schluessel}"])
            self._ssl("req", *art, "-nodes", "-keyout", key, "-out", csr, "-subj", f"/CN={name}",
                      "-config", "ca.cnf")
            with open(os.path.join(self.ordner, "erweiterung"), "w", encoding="ascii") as datei:
                datei.write("basicConstraints=CA:FALSE\n" + weiteres + "\n")
                if alternativen:
                    datei.write(f"subjectAltName={alternativen}\n")
            zeiten = (["-startdate", von] if von else []) + (["-enddate", bis] if bis else [])
            wer = ["-selfsign", "-keyfile", key] if selbst else []
            self._ssl("ca", "-batch", "-config", "ca.cnf", "-in", csr, "-out", pem, "-extfile",
                      "erweiterung", "-notext", "-md", hash_, *zeiten, *wer)
        self.letztes = nr
        kontext = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        kontext.set_ciphers("ALL:@SECLEVEL=0")
        with contextlib.suppress(ssl.SSLError):
            kontext.minimum_version = ssl.TLSVersion.TLSv1_2
        kontext.load_cert_chain(os.path.join(self.ordner, pem), os.path.join(self.ordner, key))
        return kontext

    @contextlib.contextmanager
    def mit_nachweis(self, wo, widerrufen):
        """An address of a server that brings along what the authority says of its certificate, and does no
        more. No other case may run meanwhile."""
        self.kontext(wo, f"IP:{wo}")
        pem, key = f"{self.letztes}.pem", f"{self.letztes}.key"
        if widerrufen:
            self._ssl("ca", "-batch", "-config", "ca.cnf", "-revoke", pem)
        self._ssl("ocsp", "-index", "index", "-CA", "ca.pem", "-rsigner", "ca.pem", "-rkey", "ca.key",
                  "-issuer", "ca.pem", "-cert", pem, "-ndays", "7", "-respout", "nachweis.der")
        lauf = subprocess.Popen(
            ["openssl", "s_server", "-accept", f"{wo}:8443", "-cert", pem, "-key", key,
             "-status_file", "nachweis.der", "-www", "-quiet"], cwd=self.ordner,
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            warten(lambda: _hoert(wo), was="the server")
            yield f"https://{wo}:8443"
        finally:
            lauf.kill()
            lauf.wait()


def _hoert(wo):
    with contextlib.suppress(OSError), socket.create_connection((wo, 8443), 1):
        return True
    return False
