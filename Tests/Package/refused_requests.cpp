// What the builder of requests must not compile, a case each; case 0 is in order.

#include <quen/Host/Embedding/RequestBuilder.h>

using namespace quen;

QuenSourceControlRequestPtr request(QuenSourceControlSourceTreePtr tree,
                                    QuenSourceControlRepositoryPtr repository) {
#if CASE == 0
    return makeRequest<RequestTypeImport>()
        .tree(tree, repository)
        .file("/home/me/new")
        .message("Why")
        .sourceLocation("https://host/repo/trunk")
        .request();
#elif CASE == 1 // without the message
    return makeRequest<RequestTypeImport>()
        .tree(tree, repository)
        .file("/home/me/new")
        .sourceLocation("https://host/repo/trunk")
        .request();
#elif CASE == 2 // a limit means nothing to a status
    (void)tree;
    (void)repository;
    return makeRequest<RequestTypeStatus>().files({"/a"}).limit(3).request();
#elif CASE == 3 // the same twice
    (void)tree;
    (void)repository;
    return makeRequest<RequestTypeStatus>().files({"/a"}).files({"/b"}).request();
#elif CASE == 4 // several files for a type that takes one
    return makeRequest<RequestTypeBlame>().tree(tree, repository).files({"/a"}).request();
#endif
}
