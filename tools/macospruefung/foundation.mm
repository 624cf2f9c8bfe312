#include "attrappen.h"

#import <Foundation/Foundation.h>

#include <map>
#include <thread>
#include <utility>

namespace {

struct Behandlung
{
    id wer;
    SEL womit;
};

std::map<std::pair<AEEventClass, AEEventID>, Behandlung> &behandlungen()
{
    static std::map<std::pair<AEEventClass, AEEventID>, Behandlung> alle;
    return alle;
}

} // namespace

@implementation NSAppleEventManager (KalvaroPruefung)

+ (NSAppleEventManager *)sharedAppleEventManager
{
    static NSAppleEventManager *const eine = [[NSAppleEventManager alloc] init];
    return eine;
}

- (void)setEventHandler:(id)handler
            andSelector:(SEL)handleEventSelector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID
{
    behandlungen()[{eventClass, eventID}] = {handler, handleEventSelector};
}

- (void)removeEventHandlerForEventClass:(AEEventClass)eventClass andEventID:(AEEventID)eventID
{
    behandlungen().erase({eventClass, eventID});
}

@end

@implementation NSBundle (KalvaroPruefung)

- (NSString *)bundleIdentifier
{
    const QString &kennung = kalvaro::attrappen::mitteilungen().buendelkennung;
    return kennung.isEmpty() ? nil : @(kennung.toUtf8().constData());
}

@end

namespace kalvaro::attrappen {

namespace {

std::vector<std::function<void()>> &ausstehende()
{
    static std::vector<std::function<void()>> alle;
    return alle;
}

} // namespace

void spaeter(std::function<void()> antwort)
{
    ausstehende().push_back(std::move(antwort));
}

void nachreichen()
{
    std::thread([alle = std::exchange(ausstehende(), {})] {
        GSRegisterCurrentThread();
        @autoreleasepool {
            for (const auto &antwort : alle) {
                antwort();
            }
        }
        GSUnregisterCurrentThread();
    }).join();
}

bool ereignis(unsigned int klasse, unsigned int nummer)
{
    @autoreleasepool {
        const auto behandlung = behandlungen().find({klasse, nummer});
        if (behandlung == behandlungen().end()) {
            return false;
        }
        [behandlung->second.wer performSelector:behandlung->second.womit
                                     withObject:nil
                                     withObject:nil];
        return true;
    }
}

} // namespace kalvaro::attrappen
