// OpenSSL as lax as it gets, for a test program and the servers that it starts.
#pragma once

#include <QFile>
#include <QTemporaryDir>

/// Lets this process and its children use every version of TLS. Has to be made before OpenSSL is first used:
/// as a static object.
class TWeakOpenSsl {
public:
    TWeakOpenSsl() {
        QFile file(FFolder.filePath(QStringLiteral("openssl.cnf")));
        if (!file.open(QIODevice::WriteOnly))
            return;
        file.write("openssl_conf = start\n[start]\nssl_conf = versions\n[versions]\nsystem_default = weak\n"
                   "[weak]\nMinProtocol = TLSv1\nCipherString = ALL:@SECLEVEL=0\n"
                   "[req]\ndistinguished_name = name\n[name]\n");
        qputenv("OPENSSL_CONF", file.fileName().toUtf8());
    }

private:
    QTemporaryDir FFolder;
};
