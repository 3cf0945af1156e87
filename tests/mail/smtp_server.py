"""A real mail server that takes everything and tells what it got."""
import argparse
import asyncio
import datetime
import ipaddress
import logging
import os
import ssl
import warnings

from aiosmtpd.smtp import SMTP, AuthResult
from smtp_records import parsed, record, serve_until_told


def make_certificate(folder, host):
    from cryptography import x509
    from cryptography.hazmat.primitives import hashes, serialization
    from cryptography.hazmat.primitives.asymmetric import ec
    from cryptography.x509.oid import NameOID

    key = ec.generate_private_key(ec.SECP256R1())
    name = x509.Name([x509.NameAttribute(NameOID.COMMON_NAME, host)])
    now = datetime.datetime.utcnow()
    try:
        alternative = x509.IPAddress(ipaddress.ip_address(host))
    except ValueError:
        alternative = x509.DNSName(host)
    certificate = (
        x509.CertificateBuilder().subject_name(name).issuer_name(name)
        .public_key(key.public_key()).serial_number(x509.random_serial_number())
        .not_valid_before(now - datetime.timedelta(days=1))
        .not_valid_after(now + datetime.timedelta(days=1))
        .add_extension(x509.SubjectAlternativeName([alternative]), critical=False)
        .add_extension(x509.BasicConstraints(ca=True, path_length=0), critical=True)
        .sign(key, hashes.SHA256()))
    pem, key_pem = os.path.join(folder, "server.pem"), os.path.join(folder, "server.key")
    with open(pem, "wb") as file:
        file.write(certificate.public_bytes(serialization.Encoding.PEM))
    with open(key_pem, "wb") as file:
        file.write(key.private_bytes(serialization.Encoding.PEM,
                                     serialization.PrivateFormat.PKCS8,
                                     serialization.NoEncryption()))
    return pem, key_pem


class Recorder:
    async def handle_DATA(self, server, session, envelope):
        record(sender=envelope.mail_from, recipients=envelope.rcpt_tos,
               login=session.authenticated, encrypted=server.transport.get_extra_info("ssl_object") is not None,
               **parsed(envelope.content))
        return "250 taken"


def main():
    # Failed handshakes are what some tests are about.
    logging.disable()
    warnings.simplefilter("ignore")
    options = argparse.ArgumentParser()
    options.add_argument("--security", choices=["none", "ssl", "tls"], default="none")
    options.add_argument("--certificate-host", default="127.0.0.1")
    options.add_argument("--folder")
    options.add_argument("--login")
    options.add_argument("--password")
    arguments = options.parse_args()

    context = None
    if arguments.security != "none":
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(*make_certificate(arguments.folder, arguments.certificate_host))

    def check(server, session, envelope, mechanism, data):
        good = (data.login.decode() == arguments.login
                and data.password.decode() == arguments.password)
        return AuthResult(success=good, handled=False)

    def factory():
        return SMTP(
            Recorder(), enable_SMTPUTF8=True, ident="test", data_size_limit=0,
            tls_context=context if arguments.security == "tls" else None,
            require_starttls=arguments.security == "tls",
            auth_required=arguments.login is not None, authenticator=check,
            # An outer SSL is not known to the server's own rule.
            auth_require_tls=arguments.security == "tls")

    asyncio.run(serve_until_told(factory, context if arguments.security == "ssl" else None))


main()
