#include "fkit/socketerrors.h"

#include <cerrno>

namespace {

struct Row
{
    SocketOperation operation;
    int systemError;
    FSocket::Error error;
};

using enum SocketOperation;

// clang-format off
constexpr Row Rows[] = {
    { ReadWrite,   ENONET,          FSocket::NetworkFailure    },
    { ReadWrite,   ENETDOWN,        FSocket::NetworkFailure    },
    { ReadWrite,   ENETUNREACH,     FSocket::NetworkFailure    },
    { ReadWrite,   ETIMEDOUT,       FSocket::NetworkFailure    },
    { ReadWrite,   EHOSTUNREACH,    FSocket::NetworkFailure    },
    { ReadWrite,   EIO,             FSocket::InvalidSocket     },
    { ReadWrite,   EBADF,           FSocket::InvalidSocket     },
    { ReadWrite,   EFAULT,          FSocket::InvalidSocket     },
    { ReadWrite,   EISDIR,          FSocket::InvalidSocket     },
    { ReadWrite,   EINVAL,          FSocket::InvalidSocket     },
    { ReadWrite,   ENOSPC,          FSocket::InvalidSocket     },
    { ReadWrite,   ENOTSOCK,        FSocket::InvalidSocket     },
    { ReadWrite,   ENOTCONN,        FSocket::InvalidSocket     },
    { Option,      EBADF,           FSocket::InvalidSocket     },
    { Option,      ENOTSOCK,        FSocket::InvalidSocket     },
    { Option,      EFAULT,          FSocket::Impossible        },
    { Bind,        EFAULT,          FSocket::Impossible        },
    { Bind,        ENAMETOOLONG,    FSocket::Impossible        },
    { Bind,        EINVAL,          FSocket::AlreadyBound      },
    { Bind,        ENOMEM,          FSocket::NoResources       },
    { Bind,        EACCES,          FSocket::Inaccessible      },
    { Connect,     EBADF,           FSocket::InvalidSocket     },
    { Connect,     ENOTSOCK,        FSocket::InvalidSocket     },
    { Connect,     EFAULT,          FSocket::Impossible        },
    { Connect,     EAFNOSUPPORT,    FSocket::Impossible        },
    { Connect,     ENETUNREACH,     FSocket::Impossible        },
    { Connect,     ETIMEDOUT,       FSocket::Impossible        },
    { Connect,     ECONNREFUSED,    FSocket::ConnectionRefused },
    { Create,      EINVAL,          FSocket::InvalidSocket     },
    { Create,      EPROTONOSUPPORT, FSocket::Impossible        },
    { SetBlocking, EBADF,           FSocket::InvalidSocket     },
    { SetBlocking, EACCES,          FSocket::InvalidSocket     },
};
// clang-format on

} // namespace

FSocket::Error socketError(SocketOperation operation, int systemError)
{
    for (const Row &row : Rows) {
        if (row.operation == operation && row.systemError == systemError)
            return row.error;
    }
    return FSocket::UnknownError;
}
