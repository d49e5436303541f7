#include <clang-tidy/ClangTidyCheck.h>
#include <clang-tidy/ClangTidyModule.h>
#include <clang-tidy/ClangTidyModuleRegistry.h>
#include <clang/AST/ASTContext.h>
#include <clang/ASTMatchers/ASTMatchFinder.h>
#include <clang/Basic/SourceManager.h>
#include <vector>

using namespace clang;

namespace {

/// Reports nothing: it keeps the other checks from walking through the system's headers, Qt's above all,
/// where nothing that they find would be shown. That walk is two thirds of clang-tidy's time.
class OwnCodeOnly : public tidy::ClangTidyCheck
{
public:
    using ClangTidyCheck::ClangTidyCheck;

    void registerMatchers(ast_matchers::MatchFinder *finder) override
    {
        finder->addMatcher(ast_matchers::translationUnitDecl().bind("unit"), this);
    }

    /// The walk comes to the unit before it asks for what the unit holds, so that it is not too late here.
    /// The declarations of precompiled headers stay unread.
    void check(const ast_matchers::MatchFinder::MatchResult &result) override
    {
        std::vector<Decl *> own;
        for (Decl *declaration : result.Nodes.getNodeAs<TranslationUnitDecl>("unit")->noload_decls()) {
            if (!result.SourceManager->isInSystemHeader(declaration->getLocation())) {
                own.push_back(declaration);
            }
        }
        result.Context->setTraversalScope(own);
    }
};

class QuilmoraModule : public tidy::ClangTidyModule
{
    void addCheckFactories(tidy::ClangTidyCheckFactories &factories) override
    {
        factories.registerCheck<OwnCodeOnly>("quilmora-own-code-only");
    }
};

const tidy::ClangTidyModuleRegistry::Add<QuilmoraModule> added{"quilmora", "What Quilmora's lint adds"};

} // namespace
